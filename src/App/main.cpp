#include "App/Application.h"

int main(int argc, char** argv) { return tarnwell::runApplication(argc, argv); }
