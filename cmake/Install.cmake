# Installation: the programs in bin/, the extension and the platform
# library in lib/ (the programs find the latter through their RUNPATH), and
# the data a device needs in share/zorvel/ (the reading table, the compiled
# area database, the sample settings), where `zorvel device create` looks
# for it when there is no bundled sample device.
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

# The window's desktop entry (the tel: link handler) and its icon.
install(FILES ${PROJECT_SOURCE_DIR}/dist/zorvel-phone.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/dist/icons/zorvel-phone.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
