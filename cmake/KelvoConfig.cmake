# The addresses that a build of the program points to, each a cache variable:
#   cmake --preset release -DKELVO_IRC_HOST=irc.example.net
# The defaults are neutral names that never resolve. The program reads them from
# core/BuildConfig.h, which is generated here.
set(KELVO_IRC_HOST "irc.kelvo.invalid" CACHE STRING "Host of the help chat's IRC server")
set(KELVO_COMMUNITY_URL "https://kelvo.example/community" CACHE STRING "Page of the community")
set(KELVO_ABOUT_URL_1 "https://kelvo.example/" CACHE STRING "First address of the about window")
set(KELVO_ABOUT_URL_2 "https://kelvo.example/team" CACHE STRING "Second address of the about window")
set(KELVO_ABOUT_URL_3 "https://kelvo.example/thanks" CACHE STRING "Third address of the about window")

configure_file(${PROJECT_SOURCE_DIR}/src/core/BuildConfig.h.in
               ${PROJECT_BINARY_DIR}/generated/core/BuildConfig.h @ONLY)
target_include_directories(kelvo_options INTERFACE ${PROJECT_BINARY_DIR}/generated)
