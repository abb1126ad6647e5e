# Library, headers, tool and the CMake package `commonground`.
include(CMakePackageConfigHelpers)

# Programs find the library relative to their own path, so that the prefix can be moved.
file(RELATIVE_PATH library_place ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
string(REGEX REPLACE "/$" "" library_place "${library_place}")
if(TARGET wirelens)
  set_target_properties(wirelens PROPERTIES INSTALL_RPATH "$ORIGIN/${library_place}")
endif()

install(TARGETS commonground EXPORT commonground
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(module zet_ConsoleLog zet_FileLog zet_Secure)
  if(TARGET ${module})
    set_target_properties(${module} PROPERTIES INSTALL_RPATH $ORIGIN)
    install(TARGETS ${module} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endif()
endforeach()
if(TARGET wirelens)
  install(TARGETS wirelens RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  if(TARGET wirelens_pages)
    set(pages ${PROJECT_BINARY_DIR}/wirelens_pages)
    install(FILES ${pages}/wirelens.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${pages}/wirelens DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${pages}/_wirelens DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  endif()
endif()

foreach(floor ${COMMONGROUND_FLOORS})
  if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${floor})
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${floor} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/commonground
      COMPONENT headers FILES_MATCHING PATTERN "*.h" PATTERN "*.def"
      PATTERN "framework/modules" EXCLUDE
      PATTERN "framework/platform" EXCLUDE
      PATTERN "packaging/wire" EXCLUDE
      PATTERN "net/door" EXCLUDE
      PATTERN "inner" EXCLUDE)
  endif()
endforeach()

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/commonground)
install(EXPORT commonground NAMESPACE commonground:: FILE commongroundTargets.cmake DESTINATION ${package})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/commongroundConfig.cmake.in
  ${PROJECT_BINARY_DIR}/commongroundConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/commongroundConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/commongroundConfig.cmake ${PROJECT_BINARY_DIR}/commongroundConfigVersion.cmake
  DESTINATION ${package})
