# The pictures of windows and tools, drawn from their sources into the folder "images" beside the program.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_program(IMAGEMAGICK_CONVERT convert REQUIRED)

set(image_sources ${CMAKE_SOURCE_DIR}/resources/images)
set(image_folder ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/images)
file(MAKE_DIRECTORY ${image_folder})

set(images)
function(draw_image source size output)
  add_custom_command(OUTPUT ${output}
    COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${output} ${image_sources}/${source}.svg
    DEPENDS ${image_sources}/${source}.svg VERBATIM)
endfunction()

foreach(tool Background CameraLink syncCamera Reload)
  draw_image(${tool} 24 ${image_folder}/${tool}.png)
  draw_image(${tool} 48 ${image_folder}/${tool}@2x.png)
  list(APPEND images ${image_folder}/${tool}.png ${image_folder}/${tool}@2x.png)
endforeach()

set(icon_pictures)
foreach(size 16 24 32 48 64 128)
  set(picture ${CMAKE_CURRENT_BINARY_DIR}/Quorvane${size}.png)
  draw_image(Quorvane ${size} ${picture})
  list(APPEND icon_pictures ${picture})
endforeach()
add_custom_command(OUTPUT ${image_folder}/Quorvane.ico
  COMMAND ${IMAGEMAGICK_CONVERT} ${icon_pictures} ${image_folder}/Quorvane.ico
  DEPENDS ${icon_pictures} VERBATIM)
list(APPEND images ${image_folder}/Quorvane.ico)

add_custom_target(quorvane_images DEPENDS ${images})
add_dependencies(quorvane quorvane_images)
install(DIRECTORY ${image_folder} DESTINATION .)

# The cube maps, beside the program too.
set(cube_map_sources ${CMAKE_SOURCE_DIR}/resources/CubeMaps)
set(cube_map_folder ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/CubeMaps)
set(cube_maps)
foreach(cube_map asphalt_morning hills_evening meadow_noon)
  foreach(stem FR LF BK RT UP DN)
    set(face ${cube_map}/${stem}.jpg)
    add_custom_command(OUTPUT ${cube_map_folder}/${face}
      COMMAND ${CMAKE_COMMAND} -E copy ${cube_map_sources}/${face} ${cube_map_folder}/${face}
      DEPENDS ${cube_map_sources}/${face} VERBATIM)
    list(APPEND cube_maps ${cube_map_folder}/${face})
  endforeach()
endforeach()
add_custom_target(quorvane_cube_maps DEPENDS ${cube_maps})
add_dependencies(quorvane quorvane_cube_maps)
install(DIRECTORY ${cube_map_sources} DESTINATION .)
