# Where an install puts Velunta's files, and the functions that put the outside
# programs there. The program finds them at run time by the same relative paths
# (see LayoutOf in src/core/AppFolder.h):
#
#   bin/velunta                         the program
#   libexec/velunta/<name>              companion programs (png, bmpExport, ...)
#   libexec/velunta/effects/<name>      bundled effect programs, linked into each
#                                       user's effects folder at start
#   share/velunta/                      data files and their list, velunta-data.txt
#   share/velunta/translations/         compiled translations (velunta_<lang>.qm)
#
# In the build tree everything lies beside the program instead (VELUNTA_PROGRAM_DIR),
# so a build runs like a portable folder.
include(GNUInstallDirs)

set(VELUNTA_PROGRAM_DIR ${PROJECT_BINARY_DIR}/src/shell)
set(VELUNTA_INSTALL_LIBEXECDIR ${CMAKE_INSTALL_LIBEXECDIR}/velunta)
set(VELUNTA_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/velunta)
# The same folders seen from bin/, compiled into the program.
file(RELATIVE_PATH VELUNTA_BIN_TO_LIBEXEC ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_FULL_LIBEXECDIR}/velunta)
file(RELATIVE_PATH VELUNTA_BIN_TO_DATA ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/velunta)

# velunta_companion(<target>...): a companion program that Velunta hands exchange
# files to. Built beside the program, installed in libexec/velunta/; found at run
# time by CompanionProgram(AppFolder, name).
function(velunta_companion)
  foreach(target ${ARGN})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VELUNTA_PROGRAM_DIR})
    install(TARGETS ${target} RUNTIME DESTINATION ${VELUNTA_INSTALL_LIBEXECDIR})
  endforeach()
endfunction()

# velunta_effect_program(<target or script file>...): an effect program that ships with
# Velunta. Built (or copied) into effects/ beside the program, installed in
# libexec/velunta/effects/; an installed Velunta links it into AppFolder's effects/,
# where the effects scan finds it.
function(velunta_effect_program)
  foreach(item ${ARGN})
    if(TARGET ${item})
      set_target_properties(${item} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VELUNTA_PROGRAM_DIR}/effects)
      install(TARGETS ${item} RUNTIME DESTINATION ${VELUNTA_INSTALL_LIBEXECDIR}/effects)
    else()
      get_filename_component(script ${item} ABSOLUTE)
      get_filename_component(name ${item} NAME)
      configure_file(${script} ${VELUNTA_PROGRAM_DIR}/effects/${name} COPYONLY)
      install(PROGRAMS ${script} DESTINATION ${VELUNTA_INSTALL_LIBEXECDIR}/effects)
    endif()
  endforeach()
endfunction()
