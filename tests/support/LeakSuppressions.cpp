// Read by the leak checker; nobody calls these otherwise.

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_options();

// setlocale of the C library loses the list that it makes of LOCPATH.
const char* __lsan_default_suppressions() {
  return "leak:__argz_add_sep\n";
}

const char* __lsan_default_options() {
  return "print_suppressions=0";
}
