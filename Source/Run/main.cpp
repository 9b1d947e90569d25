// orvek-run: the engine on a document, without a window.
#include "Run/RunProgram.h"
#include "Simulation/Document/ProgramResources.h"

int main(int argc, char** argv) {
    const ProgramResources resources;
    return RunProgram({argv + 1, argv + argc}, resources, ORVEK_VERSION);
}
