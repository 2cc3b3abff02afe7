# On Debian, with g++-mingw-w64-x86-64. KIT is the folder of the kit.
x86_64-w64-mingw32-g++ -std=c++17 -DUNICODE -I "$KIT/include" -o accounts.exe accounts.cpp \
  -static -lole32 -loleaut32 -luuid
