#include "Command.h"

int main(int nArguments, char** pArguments)
{
    return Marvane::FrameSift::RunCommand(nArguments, pArguments);
}
