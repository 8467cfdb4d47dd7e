# How a build of the base library is made: used for the library itself and for the
# generic-backend twin that the tests compare it with.

# Reads the exported names (one a line, '#' starts a comment) into OUT_VAR.
function(zivks_read_exports file out_var)
  file(STRINGS ${file} _lines REGEX "^ZIVKS_")
  set(${out_var} ${_lines} PARENT_SCOPE)
endfunction()

# Writes a linker version script that exports the names of FILE and hides all else.
function(zivks_version_script file out)
  zivks_read_exports(${file} _names)
  set(_text "{\n  global:\n")
  foreach(_n IN LISTS _names)
    string(APPEND _text "    ${_n};\n")
  endforeach()
  string(APPEND _text "  local: *;\n};\n")
  file(CONFIGURE OUTPUT ${out} CONTENT "${_text}")
endfunction()

# The compile flags of a backend; for x86 those of one level (v2, v3 or v4).
function(zivks_backend_flags backend level out_var)
  set(_flags)
  if(backend STREQUAL "x86")
    list(APPEND _flags -march=x86-64-${level})
    if(level STREQUAL "v4")
      list(APPEND _flags -mprefer-vector-width=512)
    endif()
  endif()
  set(${out_var} ${_flags} PARENT_SCOPE)
endfunction()

# zivks_add_base_library(NAME BACKEND LEVEL SOURCES...); LEVEL matters to x86 only.
function(zivks_add_base_library name backend level)
  add_library(${name} SHARED ${ARGN})
  string(TOUPPER ${backend} _BK)
  zivks_backend_flags(${backend} ${level} _bflags)
  target_compile_definitions(${name} PRIVATE ZIVKS_BUILDING ZIVKS_BACKEND_${_BK}=1)
  target_include_directories(${name} PRIVATE
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR})
  target_compile_options(${name} PRIVATE ${ZIVKS_FP_FLAGS} ${_bflags}
    -fvisibility=hidden -fvisibility-inlines-hidden -fno-exceptions -fno-rtti -Wall -Wextra)
  # Linked by the C driver: no libstdc++ and no libgcc_s. The ZIVK_* core services stay
  # undefined and are bound at load time, with no DT_NEEDED entry for their library.
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE C)
  target_link_options(${name} PRIVATE
    -Wl,--version-script=${CMAKE_BINARY_DIR}/zivks_base.map -Wl,--as-needed
    -Wl,-Bsymbolic-functions -Wl,-z,now)
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_BINARY_DIR}/zivks_base.map)
  target_link_libraries(${name} PRIVATE m)
endfunction()

# zivks_add_core_library(NAME LABEL): the core services; LABEL is what the version
# record gives as the backend, the level included for x86 ("x86-64-v3").
function(zivks_add_core_library name label)
  add_library(${name} SHARED ${PROJECT_SOURCE_DIR}/zivk_core/zivk_core.cpp)
  target_compile_options(${name} PRIVATE ${ZIVKS_FP_FLAGS} -fvisibility=hidden -fno-exceptions -fno-rtti)
  target_compile_definitions(${name} PRIVATE ZIVK_CORE_BUILDING
    ZIVK_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} ZIVK_VERSION_MINOR=${PROJECT_VERSION_MINOR}
    ZIVK_VERSION_PATCH=${PROJECT_VERSION_PATCH} ZIVK_BACKEND_NAME="${label}")
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINKER_LANGUAGE C)
endfunction()
