# Helpers shared by the folder CMakeLists files.

# Where the build writes the bundled sample device root; `zorvel` uses it when
# neither --root nor ZORVEL_ROOT is given.
set(ZV_SAMPLE_ROOT ${CMAKE_BINARY_DIR}/sample-device)

# zv_add_executable(name SOURCES...): a program on the platform stand-in; link
# the logic libraries it needs (zvlogic for all of them).
function(zv_add_executable name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE zvplatform)
  target_compile_definitions(${name} PRIVATE
                             ZV_SAMPLE_ROOT="${ZV_SAMPLE_ROOT}")
endfunction()

# zv_logic_library(dir [deps...]): the static library zv_<dir> from every
# src/<dir>/*.cc (the extension's entry file excluded), linked with the
# libraries of the folders it builds on. A folder without sources yet gives
# an interface library so that dependents still link.
set(ZV_LOGIC_TARGETS "" CACHE INTERNAL "")
function(zv_logic_library dir)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS
       ${PROJECT_SOURCE_DIR}/src/${dir}/*.cc)
  list(FILTER sources EXCLUDE REGEX ".*/extension_main\\.cc$")
  set(deps)
  foreach(d ${ARGN})
    list(APPEND deps zv_${d})
  endforeach()
  if(sources)
    add_library(zv_${dir} STATIC ${sources})
    target_link_libraries(zv_${dir} PUBLIC ${deps} zvplatform
                          PkgConfig::SQLITE PkgConfig::ICU)
    target_include_directories(zv_${dir} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    set(ZV_LOGIC_TARGETS ${ZV_LOGIC_TARGETS} zv_${dir} CACHE INTERNAL "")
  else()
    add_library(zv_${dir} INTERFACE)
    target_link_libraries(zv_${dir} INTERFACE ${deps} zvplatform)
  endif()
endfunction()
