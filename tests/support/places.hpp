// Where the build has put things. Not macros: a compiler cache serves every clone of the project.
#pragma once

namespace test
{

extern const char *const data_directory; // of the sources
extern const char *const compositor_binary;
extern const char *const vantore_msg_binary;
extern const char *const cued_child_binary;

} // namespace test
