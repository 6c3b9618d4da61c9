// zintra-sim: runs the add-in inside a simulated Outlook profile and shows what it does.
#include "tools/zintra-sim/cli.h"

int main(int argc, char** argv) { return zintra::simtool::Main(argc, argv); }
