// Leaks inside libpff that the Outlook data file reader cannot free, suppressed for the
// sanitizer builds (as fuzz/lsan.supp does for the fuzz targets): libpff 20180714 loses
// a column definition on its own error path while reading a damaged table. Anything our
// own code leaks, through libpff or not, is still reported.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libpff_column_definition_initialize\n";
}
