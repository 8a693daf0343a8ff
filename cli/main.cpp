#include <iostream>

#include "Cli.h"

int main(int argc, char** argv) {
    return loomcrest::cli::runLoomcrest(argc, argv, std::cout, std::cerr);
}
