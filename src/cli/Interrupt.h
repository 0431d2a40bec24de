#ifndef CLI_INTERRUPT_H
#define CLI_INTERRUPT_H

//! Ctrl-C and its kin: noted when they come, obeyed at the next safe point.
namespace Cli::Interrupt {

//! From now on SIGINT, SIGTERM and SIGHUP are noted. One that the caller had set to be ignored,
//! as nohup(1) does, stays ignored.
void install();

//! Whether the program was asked to stop.
bool requested();

//! The opposite, for those who ask so.
bool mayGoOn();

//! Waits until \a descriptor has something to read, or its end. \return false when the program was
//! asked to stop before.
bool waitForInput(int descriptor);

} // namespace Cli::Interrupt

#endif
