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

foreach(tool CameraLink syncCamera AO LEM Capture Reload)
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
