# The utilities and the library's start-up, part of bl_model.
set(BL_UTILS_SOURCES
  ${CMAKE_CURRENT_SOURCE_DIR}/HBOBoardUtils.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/HBOBoardDiagramMgr.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/HBOLibInit.cpp
)
