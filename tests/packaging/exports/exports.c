// SPDX-License-Identifier: Apache-2.0
// Loads the library as a program in any language would, and asks it for each name of a list.

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

int main(int count, char** arguments)
{
    if (count != 3) {
        fprintf(stderr, "usage: exports-test LIBRARY NAMES\n");
        return 2;
    }
    void* library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    FILE* names = fopen(arguments[2], "r");
    if (!names) {
        perror(arguments[2]);
        return 2;
    }
    int missing = 0;
    char name[256];
    while (fgets(name, sizeof name, names)) {
        name[strcspn(name, "\n")] = 0;
        if (name[0] && !dlsym(library, name)) {
            printf("%s is not exported\n", name);
            ++missing;
        }
    }
    fclose(names);
    return missing ? 1 : 0;
}
