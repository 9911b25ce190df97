#pragma once

#include <QByteArray>

/// What pictures from outside are made of. Any thread.
namespace PictureContent {

/// What a decoder may be given of the JPEG, PNG or BMP file @p content: without a PNG's chunks that
/// change nothing about what is shown. Empty for other files, and where decoding might take memory
/// or time out of all proportion to the file: chunks that claim to be longer than the file, or a
/// JPEG of more scans than any encoder makes.
QByteArray decodable(const QByteArray& content);

}  // namespace PictureContent
