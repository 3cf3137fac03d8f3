# Installation: the static library, its headers, the tool, a CMake package
# (find_package(NrvDataEditing CONFIG) -> Nrv::DataEditing) and a pkg-config
# file (nrvdataedit.pc). Included at the end of the root CMakeLists.txt.

# A project that adds this one with add_subdirectory usually installs nothing
# of ours; it can still ask for the rules (e.g. to export its own targets that
# link the library).
option(NRV_INSTALL "Generate the install rules and the package files" ${NRV_TOP_LEVEL})
if(NOT NRV_INSTALL)
  return()
endif()

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(NRV_PACKAGE_NAME NrvDataEditing)
set(NRV_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/${NRV_PACKAGE_NAME}"
    CACHE STRING "Where the CMake package files go, relative to the prefix")
# Every public header goes into one directory, so that the includes written
# against the source tree ("NrvDataEditingProfile.h") work unchanged.
set(NRV_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/nrv")

# The library's interface, by name: what a host includes, and what those
# include. Every other header is private to the build and may change in any
# release (the README says which are which; .ci/steps/20-package.sh checks
# that each of these compiles alone from the install and that no other is
# installed).
set(NRV_PUBLIC_HEADERS
  # The scan record, the symbologies, NRVRESULT and the codes; their names and meanings.
  include/NrvScanTypes.h
  include/NrvResultCodes.h
  # The profile (with the list it holds), its limits, and the parser's trace.
  engine/NrvDataEditingProfile.h
  utilities/NrvList.h
  engine/NrvLimits.h
  engine/NrvTrace.h
  # The command table: names, parameters, samples, the reserved index values.
  engine/NrvCommandTable.h
  # The settings of a profile: its triggers and limits as people write them.
  engine/NrvSettings.h
  # Where and why an expression fails, and what each node yields; as JSON.
  engine/NrvDiagnostics.h
  engine/NrvParseDiagnosis.h
  engine/NrvExplain.h
  engine/NrvJson.h
  engine/NrvShownBytes.h
  # GS1 element strings: the AI table and the reader.
  engine/NrvGs1.h
  # Ordered rules.
  engine/NrvRuleSet.h
)
list(TRANSFORM NRV_PUBLIC_HEADERS PREPEND "${PROJECT_SOURCE_DIR}/")

# Consumers see Nrv::DataEditing both through the package and, via the
# alias, through add_subdirectory.
set_target_properties(nrvdataedit PROPERTIES EXPORT_NAME DataEditing)

install(TARGETS nrvdataedit
  EXPORT NrvDataEditingTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
  INCLUDES DESTINATION ${NRV_INSTALL_INCLUDEDIR}
)
install(FILES ${NRV_PUBLIC_HEADERS}
  DESTINATION ${NRV_INSTALL_INCLUDEDIR}
  COMPONENT Development
)
# The rules-file reader, when it was built (toml++ found): Nrv::Rules.
set(NRV_RULES_INSTALLED OFF)
if(TARGET nrvrules)
  set(NRV_RULES_INSTALLED ON)
  set_target_properties(nrvrules PROPERTIES EXPORT_NAME Rules)
  install(TARGETS nrvrules
    EXPORT NrvDataEditingTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
    INCLUDES DESTINATION ${NRV_INSTALL_INCLUDEDIR}
  )
  install(FILES "${PROJECT_SOURCE_DIR}/rules/NrvRulesFile.h" "${PROJECT_SOURCE_DIR}/rules/NrvRuleTests.h"
    DESTINATION ${NRV_INSTALL_INCLUDEDIR}
    COMPONENT Development
  )
endif()
if(TARGET nrv-edit)
  install(TARGETS nrv-edit RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
endif()

install(EXPORT NrvDataEditingTargets
  NAMESPACE Nrv::
  FILE NrvDataEditingTargets.cmake
  DESTINATION ${NRV_INSTALL_CMAKEDIR}
  COMPONENT Development
)

configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/NrvDataEditingConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/NrvDataEditingConfig.cmake"
  INSTALL_DESTINATION ${NRV_INSTALL_CMAKEDIR}
)
# 1.x consumers accept any 1.y >= what they ask for; a new major breaks them.
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/NrvDataEditingConfigVersion.cmake"
  VERSION ${PROJECT_VERSION}
  COMPATIBILITY SameMajorVersion
)
install(FILES
  "${PROJECT_BINARY_DIR}/NrvDataEditingConfig.cmake"
  "${PROJECT_BINARY_DIR}/NrvDataEditingConfigVersion.cmake"
  DESTINATION ${NRV_INSTALL_CMAKEDIR}
  COMPONENT Development
)

# pkg-config: paths are written relative to the .pc file so that the tree
# still works after `cmake --install --prefix` or DESTDIR staging. Absolute
# directories given by the user are kept as they are.
set(NRV_PC_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${NRV_PC_DIR}")
  set(NRV_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH NRV_PC_UP "/nrv-root/${NRV_PC_DIR}" "/nrv-root")
  string(REGEX REPLACE "/$" "" NRV_PC_UP "${NRV_PC_UP}")
  set(NRV_PC_PREFIX "\${pcfiledir}/${NRV_PC_UP}")
endif()
foreach(NRV_DIR IN ITEMS LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${NRV_DIR}}")
    set(NRV_PC_${NRV_DIR} "${CMAKE_INSTALL_${NRV_DIR}}")
  else()
    set(NRV_PC_${NRV_DIR} "\${prefix}/${CMAKE_INSTALL_${NRV_DIR}}")
  endif()
endforeach()
string(APPEND NRV_PC_INCLUDEDIR "/nrv")
configure_file(
  "${CMAKE_CURRENT_LIST_DIR}/nrvdataedit.pc.in"
  "${PROJECT_BINARY_DIR}/nrvdataedit.pc"
  @ONLY
)
install(FILES "${PROJECT_BINARY_DIR}/nrvdataedit.pc"
  DESTINATION ${NRV_PC_DIR}
  COMPONENT Development
)
if(NRV_RULES_INSTALLED)
  configure_file(
    "${CMAKE_CURRENT_LIST_DIR}/nrvrules.pc.in"
    "${PROJECT_BINARY_DIR}/nrvrules.pc"
    @ONLY
  )
  install(FILES "${PROJECT_BINARY_DIR}/nrvrules.pc"
    DESTINATION ${NRV_PC_DIR}
    COMPONENT Development
  )
endif()
