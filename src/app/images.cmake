# The pictures of windows and tools, drawn from their sources into the folder "images" beside the program: each for three
# densities of displays, and a second time in the colours of dark themes, into "images/dark".
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_program(IMAGEMAGICK_CONVERT convert REQUIRED)

set(image_sources ${CMAKE_SOURCE_DIR}/resources/images)
set(image_folder ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/images)
set(dark_palette ${image_sources}/dark.css)
file(MAKE_DIRECTORY ${image_folder}/dark)

set(images)

# draw_images(SIZE NAME...): SIZE is that on an ordinary display, in pixels.
function(draw_images size)
  math(EXPR half_more "${size} * 3 / 2")
  math(EXPR twice "${size} * 2")
  foreach(name ${ARGN})
    set(source ${image_sources}/${name}.svg)
    set(outputs)
    set(commands)
    foreach(scale "${size}:" "${half_more}:@1.5x" "${twice}:@2x")
      string(REGEX MATCH "^([0-9]+):(.*)$" matched "${scale}")
      set(pixels ${CMAKE_MATCH_1})
      set(file ${name}${CMAKE_MATCH_2}.png)
      list(APPEND outputs ${image_folder}/${file} ${image_folder}/dark/${file})
      list(APPEND commands
        COMMAND ${RSVG_CONVERT} -w ${pixels} -h ${pixels} -o ${image_folder}/${file} ${source}
        COMMAND ${RSVG_CONVERT} -w ${pixels} -h ${pixels} -s ${dark_palette} -o ${image_folder}/dark/${file} ${source})
    endforeach()
    add_custom_command(OUTPUT ${outputs} ${commands} DEPENDS ${source} ${dark_palette} VERBATIM)
    list(APPEND images ${outputs})
  endforeach()
  set(images ${images} PARENT_SCOPE)
endfunction()

draw_images(22
  AO Background CameraLink Capture CreateLightMap Delete Down FlyMode ImportScenes ImportSUAPath
  KeyFrameAnimation_KeyFrames KeyFrameAnimation_Tour LEM LightMap Movie PointLight RecordCamera RecordCameraOn Reload
  syncCamera Up View WalkMode)
draw_images(16 DeleteSmall KeyFrameAnimationSmall SaveSmall ViewSmall ViewSmallImported)

# The program's icon; its small sizes have a plainer drawing.
set(icon_pictures)
foreach(size 16 24 32 48 64 128 256)
  set(drawing Quorvane)
  if(size LESS 48)
    set(drawing QuorvaneSmall)
  endif()
  set(picture ${CMAKE_CURRENT_BINARY_DIR}/Quorvane${size}.png)
  add_custom_command(OUTPUT ${picture}
    COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${picture} ${image_sources}/${drawing}.svg
    DEPENDS ${image_sources}/${drawing}.svg VERBATIM)
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
