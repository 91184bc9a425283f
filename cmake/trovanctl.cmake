# trovanctl links, beside the core library, an XML parser (libxml2), a command-line parser (CLI11,
# header only) and a JSON library (nlohmann-json, header only). trovan itself links none of them.
find_package(LibXml2 REQUIRED)
find_package(CLI11 CONFIG REQUIRED)
find_package(nlohmann_json 3 CONFIG REQUIRED)

# The strict document model every trovanctl command shares.
file(GLOB TROVAN_MODEL_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/model/*.cpp)
list(FILTER TROVAN_MODEL_SOURCES EXCLUDE REGEX "_test\\.cpp$")
add_library(trovan_model STATIC ${TROVAN_MODEL_SOURCES})
target_link_libraries(trovan_model PUBLIC trovan_core LibXml2::LibXml2)

# The commands, in a library so that unit tests can call them; main.cpp is the thin program.
file(GLOB TROVAN_CTL_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/ctl/*.cpp)
list(FILTER TROVAN_CTL_SOURCES EXCLUDE REGEX "_test\\.cpp$|/main\\.cpp$")
add_library(trovan_ctl STATIC ${TROVAN_CTL_SOURCES})
target_link_libraries(trovan_ctl PUBLIC trovan_model CLI11::CLI11 nlohmann_json::nlohmann_json)
target_compile_definitions(trovan_ctl PRIVATE TROVAN_VERSION="${PROJECT_VERSION}")

add_executable(trovanctl ${PROJECT_SOURCE_DIR}/src/ctl/main.cpp)
target_link_libraries(trovanctl PRIVATE trovan_ctl)
install(TARGETS trovanctl RUNTIME DESTINATION ${CMAKE_INSTALL_SBINDIR})
