# The texts of the windows in other languages, into the folder "locale" beside the program, one folder a language: our own
# catalogue, and that of the window library.
find_program(MSGFMT msgfmt REQUIRED)
find_path(WX_CATALOGUES de/LC_MESSAGES/wxstd-3.2.mo PATHS /usr/share/locale NO_CMAKE_FIND_ROOT_PATH REQUIRED)

set(catalogue_sources ${CMAKE_SOURCE_DIR}/resources/locale)
set(catalogue_folder ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/locale)

set(catalogues)
foreach(language de ja)
  file(MAKE_DIRECTORY ${catalogue_folder}/${language})
  set(ours ${catalogue_folder}/${language}/quorvane.mo)
  add_custom_command(OUTPUT ${ours}
    COMMAND ${MSGFMT} --check -o ${ours} ${catalogue_sources}/${language}/quorvane.po
    DEPENDS ${catalogue_sources}/${language}/quorvane.po VERBATIM)
  set(theirs ${catalogue_folder}/${language}/wxstd-3.2.mo)
  add_custom_command(OUTPUT ${theirs}
    COMMAND ${CMAKE_COMMAND} -E copy ${WX_CATALOGUES}/${language}/LC_MESSAGES/wxstd-3.2.mo ${theirs} VERBATIM)
  list(APPEND catalogues ${ours} ${theirs})
endforeach()

add_custom_target(quorvane_catalogues DEPENDS ${catalogues})
add_dependencies(quorvane quorvane_catalogues)
install(DIRECTORY ${catalogue_folder} DESTINATION .)
