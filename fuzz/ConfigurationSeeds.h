#pragma once

namespace paravue::fuzz
{

class Corpus;

/// Adds the inputs of the targets for configuration files and descriptions, from the models of the simulator.
void addConfiguration(Corpus &corpus);

} // namespace paravue::fuzz
