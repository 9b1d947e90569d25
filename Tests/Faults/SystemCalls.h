// The system calls that have to do with files, under a test's control: the n-th one fails, or the
// process ends there. This program's own functions of their names stand before the system's.
// Counts the calls of the thread that has asked for it.
#pragma once

#include <string>

namespace SystemCalls {

// What the file system is like.
struct World {
    bool hasNamelessFiles = true;
    bool canNameThem = true;
};

// From now on calls are counted, from 1.
void FailAt(int call, const World& world = {});  // with EIO
// A writing call does half of its work before that.
void EndAt(int call, const World& world = {});
// Back to normal; how many calls there were.
int Stop();

// What was made to fail.
[[nodiscard]] const std::string& Failed();
inline constexpr int kEnded = 77;  // the exit status of a process that ended by this

}  // namespace SystemCalls
