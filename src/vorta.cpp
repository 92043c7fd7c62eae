#include "Main.h"

int main(int argc, char** argv) { return vortaMain(argc, argv); }
