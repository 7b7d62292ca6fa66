#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// Other programs as peers.
namespace lorvane::bench {

struct ChildResult {
    int status = -1;
    double peakMemory = 0;  ///< bytes
};

/// Runs a program, found on the path, with its standard output in a file, and waits for its end. Ends this program where it cannot be started.
inline ChildResult runChild(const std::vector<std::string>& words, const std::string& output = "/dev/null") {
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        std::fprintf(stderr, "%s cannot be started\n", arguments[0]);
        std::exit(1);
    }
    ChildResult result;
    rusage usage{};
    wait4(child, &result.status, 0, &usage);
    result.peakMemory = 1024.0 * static_cast<double>(usage.ru_maxrss);
    return result;
}

}  // namespace lorvane::bench
