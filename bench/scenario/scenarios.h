#pragma once

/// What is measured on whole programs rather than on single functions. Each prints its figures and
/// returns whether all that it needs was there; whether a figure is good is for the reader to
/// judge.

/// Start to first painted frame, and resident memory, of the terminal and of a blank window.
bool measureStart();
/// What the standby screen costs while nothing happens, for a minute.
bool measureIdle();
/// Screen changes in this process: their time, and what 10,000 of them leave behind. Needs a
/// QApplication.
bool measureScreens();
/// The list of 10,000 logs and the grid of 500 pictures, thrown by a finger: the gaps between
/// frames beside those of a list of empty rows, and memory. Needs a QApplication.
bool measureLists();
/// A hundred enrolments by a finger, with the simulated controller at the other end of a real
/// socket: the time of each step, and what they leave behind. Needs a QApplication.
bool measureEnrolments();
/// The REST server's answers a second and their times, beside the HTTP library's with nothing
/// behind it. Needs a QApplication.
bool measureRest();
/// Results of recognitions in this process, from the first byte of the frame to the painted screen.
/// Needs a QApplication, as the next two.
bool measureResult();
/// The box around a face that moves: CPU time and painted pixels.
bool measureTracking();
/// What the standby screen paints in a minute.
bool measureStandby();
/// The list of 10,000 users from the REST server, beside the query that it takes.
bool measureUsers();
/// 10,000 users sent by the management service, or as many as the next argument says, until the
/// controller has been told of all, and how soon touches are answered meanwhile. Needs a
/// QApplication.
bool measureOrders();
/// A day at the door, as fast as it goes, or one part of it in as many as the next argument says:
/// what is held at its end and was not after its first hour. Needs a QApplication.
bool measureDay();
/// The terminal under mixed load for ten minutes, or as many as the next argument says: what grows,
/// and how soon frames are answered meanwhile.
bool measureLoad();
