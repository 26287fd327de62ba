#include "command/verbs/run_verb.h"

int main(int argc, char** argv)
{
    return brevlin::runVerb(argc, argv);
}
