#ifndef CLI_INTERRUPT_H
#define CLI_INTERRUPT_H

//! Ctrl-C and similar signals, which take effect at the next safe point.
namespace Cli::Interrupt {

//! Starts to watch for SIGINT, SIGTERM and SIGHUP. A signal that the caller set to be ignored, as
//! nohup(1) does, stays ignored.
void install();

//! Whether the program was asked to stop.
bool requested();

//! The opposite of requested().
bool mayGoOn();

//! Waits until \a descriptor has data or is at its end. \return false if the program was asked to
//! stop before that.
bool waitForInput(int descriptor);

} // namespace Cli::Interrupt

#endif
