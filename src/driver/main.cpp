#include "driver/main_flow.h"

int main(int argc, char** argv) { return RunConverter(argc, argv); }
