#include <csignal>
#include <iostream>

#include "Cli.h"

int main(int argc, char** argv) {
    // A write past the file-size limit then fails with EFBIG and is reported like a full
    // disk, instead of ending the program in the middle of a file.
    std::signal(SIGXFSZ, SIG_IGN);
    return loomcrest::cli::runLoomcrest(argc, argv, std::cout, std::cerr);
}
