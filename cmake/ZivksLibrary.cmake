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

function(zivks_backend_flags backend out_var)
  set(_flags)
  if(backend STREQUAL "x86")
    if(ZIVKS_X86_LEVEL STREQUAL "v4")
      list(APPEND _flags -march=x86-64-v4 -mprefer-vector-width=512)
    elseif(ZIVKS_X86_LEVEL STREQUAL "v3")
      list(APPEND _flags -march=x86-64-v3)
    else()
      list(APPEND _flags -march=x86-64-v2)
    endif()
  endif()
  set(${out_var} ${_flags} PARENT_SCOPE)
endfunction()

# zivks_add_base_library(NAME BACKEND SOURCES...)
function(zivks_add_base_library name backend)
  add_library(${name} SHARED ${ARGN})
  string(TOUPPER ${backend} _BK)
  zivks_backend_flags(${backend} _bflags)
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
