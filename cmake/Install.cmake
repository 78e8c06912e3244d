# Installation: the programs in bin/, the extension and the platform
# library in lib/ (the programs find the latter through their RUNPATH), the
# data a device needs in share/zorvel/ (the reading table, the compiled area
# database, the sample settings, the sample device), found by the programs
# relative to themselves (tools/zorvel/install_layout.h), and the man pages
# and bash completions.
include(GNUInstallDirs)
set_target_properties(zorvel zvtool zorvel_extension zvrender zvwindow PROPERTIES
                      INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

install(TARGETS zorvel zvtool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS zorvel_extension zvplatform zvrender zvwindow
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${PROJECT_SOURCE_DIR}/data/table/PinYin.txt
              ${PROJECT_SOURCE_DIR}/data/device/zorvel.plist
              ${PROJECT_SOURCE_DIR}/data/device/zorvel.keypad.plist
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zorvel)
install(FILES ${ZV_SAMPLE_ROOT}/Library/Zorvel/Area/China
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zorvel)

# The bundled sample device, so that an installed zorvel has a default
# device without the build folder (see tools/zorvel/install_layout.h).
install(DIRECTORY ${ZV_SAMPLE_ROOT}/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zorvel/sample-device
        USE_SOURCE_PERMISSIONS)

# The man pages and bash completions, made by the programs from the same
# command-line definitions that --help prints.
set(zv_docs ${CMAKE_BINARY_DIR}/docs)
set(zv_doc_files)
foreach(program zorvel zvtool)
  foreach(kind man bash-completion)
    set(file ${zv_docs}/${program}.${kind})
    add_custom_command(
      OUTPUT ${file}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${zv_docs}
      COMMAND sh -c "\"$0\" --docs ${kind} > \"$1\"" $<TARGET_FILE:${program}>
              ${file}
      DEPENDS ${program}
      VERBATIM)
    list(APPEND zv_doc_files ${file})
  endforeach()
  install(FILES ${zv_docs}/${program}.man
          DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 RENAME ${program}.1)
  install(FILES ${zv_docs}/${program}.bash-completion
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
          RENAME ${program})
endforeach()
add_custom_target(docs ALL DEPENDS ${zv_doc_files})

# The window's desktop entry (the tel: link handler) and its icon.
install(FILES ${PROJECT_SOURCE_DIR}/dist/zorvel-phone.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/dist/icons/zorvel-phone.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# What `zorvel init` copies into a new device's /Library/Zorvel: the area
# databases, the reading table, the pictures and the reminder sound of the
# sample device (zvtool is installed from bin/ with its triggers).
install(DIRECTORY ${ZV_SAMPLE_ROOT}/Library/Zorvel/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zorvel/Library/Zorvel
        PATTERN zvtool EXCLUDE)

# The systemd user unit, pointing at the program installed under the
# configured prefix (the package is configured with /usr).
file(READ ${PROJECT_SOURCE_DIR}/dist/zorvel-callerd.service zv_unit)
string(REPLACE "/usr/bin/zorvel" "${CMAKE_INSTALL_FULL_BINDIR}/zorvel" zv_unit
       "${zv_unit}")
file(WRITE ${CMAKE_BINARY_DIR}/dist/zorvel-callerd.service "${zv_unit}")
install(FILES ${CMAKE_BINARY_DIR}/dist/zorvel-callerd.service
        DESTINATION lib/systemd/user)
