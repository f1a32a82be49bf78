# The library that matches pattern facets, as the target zuxmllib16_regex: PCRE 8, or PCRE2 where the
# former is not installed any more. Both give the same answers.
set(ZUXMLLIB16_REGEX auto CACHE STRING "Regular expression library: auto, pcre or pcre2")
set_property(CACHE ZUXMLLIB16_REGEX PROPERTY STRINGS auto pcre pcre2)
if(NOT ZUXMLLIB16_REGEX MATCHES "^(auto|pcre|pcre2)$")
  message(FATAL_ERROR "ZUXMLLIB16_REGEX must be auto, pcre or pcre2, not \"${ZUXMLLIB16_REGEX}\".")
endif()

find_path(PCRE_INCLUDE_DIR pcre.h)
find_library(PCRE_LIBRARY pcre)
find_path(PCRE2_INCLUDE_DIR pcre2.h)
find_library(PCRE2_LIBRARY pcre2-8)
mark_as_advanced(PCRE_INCLUDE_DIR PCRE_LIBRARY PCRE2_INCLUDE_DIR PCRE2_LIBRARY)

add_library(zuxmllib16_regex INTERFACE)
if(PCRE_INCLUDE_DIR AND PCRE_LIBRARY AND NOT ZUXMLLIB16_REGEX STREQUAL "pcre2")
  target_include_directories(zuxmllib16_regex SYSTEM INTERFACE ${PCRE_INCLUDE_DIR})
  target_link_libraries(zuxmllib16_regex INTERFACE ${PCRE_LIBRARY})
elseif(PCRE2_INCLUDE_DIR AND PCRE2_LIBRARY AND NOT ZUXMLLIB16_REGEX STREQUAL "pcre")
  target_include_directories(zuxmllib16_regex SYSTEM INTERFACE ${PCRE2_INCLUDE_DIR})
  target_link_libraries(zuxmllib16_regex INTERFACE ${PCRE2_LIBRARY})
  target_compile_definitions(zuxmllib16_regex INTERFACE ZUXMLLIB16_USE_PCRE2)
else()
  message(FATAL_ERROR "Neither PCRE (pcre.h) nor PCRE2 (pcre2.h) was found, as asked for by "
    "ZUXMLLIB16_REGEX=${ZUXMLLIB16_REGEX}.")
endif()
