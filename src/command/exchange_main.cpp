#include "command/run_command.h"

int main(int argc, char** argv)
{
    return brevlin::runCommand(argc, argv);
}
