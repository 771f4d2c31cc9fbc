// Where the build has put things. These are not macros, so that a compiler cache can serve every clone of the
// project.
#pragma once

namespace test
{

extern const char *const data_directory; // tests/data in the sources
extern const char *const compositor_binary;
extern const char *const vantore_msg_binary;
extern const char *const cued_child_binary;
extern const char *const vantore_launch;
extern const char *const standard_wallpaper; // the picture that comes with the compositor
extern const char *const with_launcher; // runs a command whose programs find vantore-launch

} // namespace test
