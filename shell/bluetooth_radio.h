#pragma once

namespace tolvane::shell {

// The mode of the machine's first Bluetooth adapter through BlueZ, in the
// core's radio modes: kRadioNone without an adapter or without BlueZ.
int ReadRadioMode();

// Powers the adapter on (kRadioConnectable) or off (kRadioOff) and waits up
// to a few seconds for it to follow; true when it did.
bool SwitchRadio(int mode);

}  // namespace tolvane::shell
