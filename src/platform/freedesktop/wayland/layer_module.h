#pragma once

namespace brevlin {

class FloatingWindowSystem;

} // namespace brevlin

extern "C" {
/// What the module gives, to be deleted by who asks: a LayerWindowSystem.
brevlin::FloatingWindowSystem* brevlinMakeLayerWindowSystem();
}
