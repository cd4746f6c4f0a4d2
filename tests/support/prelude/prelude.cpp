// The headers that this is for are in the CMakeLists.txt beside it.
