#pragma once

/// Tells on standard output what a face-search server has answered, and saves a picture that it
/// has sent as ./<person ID>.jpg: whole or not at all, nowhere but in the folder that the program
/// was started in, and only while the disk has room. In the receive thread of an ST_Client;
/// @p record as its callback gets it.
void ReceiveFunc(int kind, void* record);
