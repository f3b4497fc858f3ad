#include "Quelm/Application/QuelmApp.h"

int main(int argc, char** argv) {
    return quelm::QuelmApp::run(argc, argv);
}
