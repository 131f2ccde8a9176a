#pragma once

#include <QSaveFile>

namespace saved_file {

// QSaveFile keeps small writes in its buffer, and its commit() overlooks a write that fails
// while that buffer is flushed (a full disk): the new file, cut short, would replace the old one.
// Flushing first turns that failure into a failed commit; the temporary file is discarded when
// `file` goes, and the old file stays as it was.
inline bool commit(QSaveFile& file) { return file.flush() && file.commit(); }

}  // namespace saved_file
