# Finds the project's dependencies. Each is required: a missing one stops the
# configure step with one line that names the Debian package to install, so a
# new machine learns what scripts/install-deps.sh must list instead of
# meeting a missing header halfway through the build.

# The text is kept short because CMake wraps a long one over several lines.
function(tolvane_missing what debianPackage)
  message(FATAL_ERROR "Missing ${what}: apt-get install ${debianPackage}")
endfunction()

# tolvane_require_package(NAME DEBIAN_PACKAGE [find_package arguments...])
# A CMake package; its imported targets are visible from the calling folder on.
macro(tolvane_require_package name debianPackage)
  find_package(${name} ${ARGN} QUIET)
  if(NOT ${name}_FOUND)
    tolvane_missing("CMake package ${name}" ${debianPackage})
  endif()
endmacro()

# tolvane_require_pkgconfig(PREFIX MODULE DEBIAN_PACKAGE)
# A pkg-config module, as the imported target PkgConfig::PREFIX.
macro(tolvane_require_pkgconfig prefix module debianPackage)
  tolvane_require_package(PkgConfig pkg-config)
  pkg_check_modules(${prefix} QUIET IMPORTED_TARGET ${module})
  if(NOT ${prefix}_FOUND)
    tolvane_missing("library ${module}" ${debianPackage})
  endif()
endmacro()

# tolvane_require_program(VARIABLE PROGRAM DEBIAN_PACKAGE [search folders...])
# A program, its full path in the cache variable VARIABLE.
function(tolvane_require_program variable program debianPackage)
  find_program(${variable} NAMES ${program} PATHS ${ARGN})
  if(NOT ${variable})
    tolvane_missing("program ${program}" ${debianPackage})
  endif()
endfunction()

# tolvane_require_file(VARIABLE FILE DEBIAN_PACKAGE SEARCH_FOLDER)
# A data file of a package, the folder that holds it in the cache variable
# VARIABLE.
function(tolvane_require_file variable file debianPackage folder)
  find_path(${variable} NAMES ${file} PATHS ${folder} NO_DEFAULT_PATH)
  if(NOT ${variable})
    tolvane_missing("file ${folder}/${file}" ${debianPackage})
  endif()
endfunction()
