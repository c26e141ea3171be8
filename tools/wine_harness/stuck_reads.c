// Preloaded into Wine: whatever reads a file hangs as long as a file of the same name with ".gate" behind it stands
// beside it, as on a server that does not answer.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static void waitAtGate(int file) {
    char link[64], path[4096];
    struct stat gate;
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(link, path, sizeof path - 8);
    if (length <= 0 || path[0] != '/') return;
    strcpy(path + length, ".gate");
    while (stat(path, &gate) == 0) usleep(20000);
}

ssize_t pread(int file, void* to, size_t count, off_t from) {
    ssize_t (*const real)(int, void*, size_t, off_t) = dlsym(RTLD_NEXT, "pread");
    waitAtGate(file);
    return real(file, to, count, from);
}

ssize_t pread64(int file, void* to, size_t count, off64_t from) {
    ssize_t (*const real)(int, void*, size_t, off64_t) = dlsym(RTLD_NEXT, "pread64");
    waitAtGate(file);
    return real(file, to, count, from);
}

ssize_t read(int file, void* to, size_t count) {
    ssize_t (*const real)(int, void*, size_t) = dlsym(RTLD_NEXT, "read");
    waitAtGate(file);
    return real(file, to, count);
}
