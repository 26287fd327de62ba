// Prints the autostart entry for a program, for the test with systemd's generator.

#include "platform/freedesktop/login/autostart_entry.h"

#include <iostream>

int main(int argc, char** argv)
{
    if (argc == 2) {
        std::cout << brevlin::makeAutostartEntry(argv[1]);
    }
    return argc == 2 ? 0 : 2;
}
