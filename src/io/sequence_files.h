// The list-file reader: a list file is plain text, one image name per line, every line ended by
// CR LF. The library holds one reader for its whole life; the QelSequenceFiles_* functions act on it.
#ifndef QEL_SRC_IO_SEQUENCE_FILES_H
#define QEL_SRC_IO_SEQUENCE_FILES_H

namespace qel {

class QelSequenceFiles {
public:
    static constexpr int kNameCapacity = 1024;

    QelSequenceFiles() = default;
    QelSequenceFiles(const QelSequenceFiles&) = delete;
    QelSequenceFiles& operator=(const QelSequenceFiles&) = delete;
    virtual ~QelSequenceFiles();

    // Reads the whole list file and rewinds the cursor. A buffer large enough is reused; a failed
    // open leaves the previous text in place.
    bool Initialize(const char* listFileName);
    // Line `index` (from 0) without its trailing spaces; false when absent or too long for n bytes.
    bool GetFileName(int index, char* buffer, int n) const;
    // The line at the cursor; a line too long for n bytes is skipped and false returned.
    bool GetNextFileName(char* buffer, int n);

private:
    // Releases the text buffer; also zeroes the stored name and sets capacity 0 and initialised false.
    void release();
    // Copies text[start, end) into the zeroed buffer and blanks its trailing spaces.
    void copy_line(int start, int end, char* buffer) const;
    // Offset of the next CR LF at or after `from`, or -1.
    int find_line_end(int from) const;

    bool initialised_ = false;
    int capacity_ = 0;
    int size_ = 0;
    char* text_ = nullptr;  // the list file as read, not terminated
    int cursor_ = 0;
    char listFileName_[kNameCapacity] = {};
};

// The library-wide reader.
QelSequenceFiles& sequence_files();

}  // namespace qel

#endif
