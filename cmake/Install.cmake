# Installation: the programs in bin/, the extension and the platform
# library in lib/ (the programs find the latter through their RUNPATH), and
# the data a device needs in share/zorvel/ (the reading table, the compiled
# area database, the sample settings), where `zorvel device create` looks
# for it when there is no bundled sample device.
include(GNUInstallDirs)
set_target_properties(zorvel zvtool zorvel_extension zvrender PROPERTIES
                      INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

install(TARGETS zorvel zvtool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS zorvel_extension zvplatform zvrender
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${PROJECT_SOURCE_DIR}/data/table/PinYin.txt
              ${PROJECT_SOURCE_DIR}/data/device/zorvel.plist
              ${PROJECT_SOURCE_DIR}/data/device/zorvel.keypad.plist
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zorvel)
install(FILES ${ZV_SAMPLE_ROOT}/Library/Zorvel/Area/China
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zorvel)

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

# Desktop entries, their icons and man pages, where the project has them:
# dist/*.desktop, dist/icons/<theme>/<size>/apps/*, dist/man/*.1.
file(GLOB zv_desktop_entries CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/dist/*.desktop)
if(zv_desktop_entries)
  install(FILES ${zv_desktop_entries}
          DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
endif()
if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/dist/icons)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/dist/icons/
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons)
endif()
file(GLOB zv_man_pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/dist/man/*.1)
if(zv_man_pages)
  install(FILES ${zv_man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
