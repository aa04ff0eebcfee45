#include "Purchase.h"

int main(int argc, char** argv) { return argc == 2 ? buyFirstPlan(argv[1]) : 2; }
