#include <cstdlib>
#include <exception>

#ifdef __GLIBCXX__

namespace __gnu_cxx {

// What the runtime does when nobody catches an exception. Its own version first prints the
// exception's name for a console that hosts do not have, and brings the 50 KB that read such names.
void __verbose_terminate_handler() {  // NOLINT(bugprone-reserved-identifier)
  std::abort();
}

}  // namespace __gnu_cxx

#endif
