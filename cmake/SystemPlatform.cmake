# Existing platform libraries, found on the system: they must supply what the headers
# <cutil/cutil.h> and <locator/locator.h> of platform/ declare.
function(zu_find_platform_library target library header)
  find_library(ZU_${library}_LIBRARY ${library} REQUIRED)
  find_path(ZU_${library}_INCLUDE_DIR ${header} REQUIRED)
  add_library(${target} SHARED IMPORTED GLOBAL)
  set_target_properties(${target} PROPERTIES
    IMPORTED_LOCATION ${ZU_${library}_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${ZU_${library}_INCLUDE_DIR})
endfunction()

zu_find_platform_library(zu::CUtil zuCUtil cutil/cutil.h)
zu_find_platform_library(zu::UtilLocator zuUtilLocator locator/locator.h)
