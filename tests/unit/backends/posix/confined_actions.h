#pragma once

#include <string>
#include <vector>

#include "platform/os/child_process.h"

namespace posix_test {

/// confined ACTION READABLE OWN [TARGET]: confines this process to reading READABLE and writing
/// OWN, sends each lack as "lack ...", "confined", then tries the action and sends "done" or
/// "errno N". An action that ends the process sends nothing more.
int actConfined(const std::vector<std::string>& arguments, os::ParentChannel& channel);

/// restricted VERSION READABLE OWN TARGET: restricts files alone by a version of the kernel's
/// rules, then sends whether TARGET could be read, READABLE could be, and OWN could be written.
int actRestricted(const std::vector<std::string>& arguments, os::ParentChannel& channel);

/// without WHAT PROGRAM [ARGUMENT...]: runs the program on a kernel without "landlock", without
/// "seccomp" or without "both", as far as it can tell.
int runWithout(const std::vector<std::string>& arguments, os::ParentChannel& channel);

}  // namespace posix_test
