#pragma once

#include <QString>

namespace gallery {

// Writes the picture of each page, NAME.png, and gallery.png of the whole window to a directory,
// which is made if need be. Each run gives the same pictures. Returns false, and tells why on the
// standard error output, once one can't be written.
bool savePictures(const QString& directory);

} // namespace gallery
