#include "program.h"

int main(int argc, char **argv)
{
    return lindenreed::picture_stand::runProgram(argc, argv);
}
