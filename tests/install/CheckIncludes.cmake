# Fails when including ZuXmlLib16.h pulls in a header of a library that the implementation happens to use.
execute_process(COMMAND ${CXX} -std=c++17 -M -I ${INCLUDE_DIR} -x c++ ${INCLUDE_DIR}/ZuXmlLib16.h
  OUTPUT_VARIABLE dependencies COMMAND_ERROR_IS_FATAL ANY)
if(NOT dependencies MATCHES "ZuXmlLib16/Exceptions\\.h")
  message(FATAL_ERROR "the dependency list lacks the library's own headers:\n${dependencies}")
endif()
string(REGEX MATCHALL "[^ \n]*/(expat|zlib|zconf|pcre)[^/ \n]*\\.h" foreign "${dependencies}")
if(foreign)
  message(FATAL_ERROR "ZuXmlLib16.h includes ${foreign}")
endif()
