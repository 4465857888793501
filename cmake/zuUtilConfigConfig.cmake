# The package: the libraries, which have no dependencies to look for, and what builds with them.
include(${CMAKE_CURRENT_LIST_DIR}/zuUtilConfigTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/zuExportSettings.cmake)
