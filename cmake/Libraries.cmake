# The libraries that everything below the window stands on: CLI11, nlohmann's JSON and RapidXML, which are headers, and
# GoogleTest.

find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(GTest REQUIRED)
find_path(RAPIDXML_FOLDER rapidxml/rapidxml.hpp REQUIRED)
add_library(RapidXML::RapidXML INTERFACE IMPORTED)
target_include_directories(RapidXML::RapidXML INTERFACE ${RAPIDXML_FOLDER})
