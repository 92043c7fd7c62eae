#include "netpeli.h"

int results = 0;
int packets = 0;
limajuttu netlima;
bool limalaitetaan = false;
