rem In a developer command prompt of Visual Studio. KIT is the folder of the kit.
cl /std:c++17 /EHsc /DUNICODE /I "%KIT%\include" accounts.cpp ole32.lib oleaut32.lib user32.lib
