# OpenCv::Dnn: the two modules that are needed; libopencv-dev, which has the CMake
# package, would bring all of them.
find_path(OPENCV_INCLUDE_DIR opencv2/dnn.hpp PATH_SUFFIXES opencv4)
find_library(OPENCV_CORE_LIBRARY opencv_core)
find_library(OPENCV_DNN_LIBRARY opencv_dnn)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(OpenCvDnn
  REQUIRED_VARS OPENCV_DNN_LIBRARY OPENCV_CORE_LIBRARY OPENCV_INCLUDE_DIR)
mark_as_advanced(OPENCV_INCLUDE_DIR OPENCV_CORE_LIBRARY OPENCV_DNN_LIBRARY)
if(OpenCvDnn_FOUND AND NOT TARGET OpenCv::Dnn)
  add_library(OpenCv::Dnn INTERFACE IMPORTED)
  target_include_directories(OpenCv::Dnn SYSTEM INTERFACE "${OPENCV_INCLUDE_DIR}")
  target_link_libraries(OpenCv::Dnn INTERFACE "${OPENCV_DNN_LIBRARY}" "${OPENCV_CORE_LIBRARY}")
endif()
