// The conversion layer of the Python binding: every bound function is one line naming the C++
// function and, for each of its parameters in order, a role saying where the value comes from
// (a Python argument, an image's size, a new result array, scratch). The roles check dtype, shape
// and contiguity with errors that name the argument, allocate results, release the GIL around the
// library call and turn the library's refusals into ValueError before anything is returned.
//
//   QEL_BIND(m, "rgb_to_grey", QelRGB2Gry, "Grey image of a BGR image.",
//            none, bgr("rgb"), width, height, grey_out());
//
// Call phases, for every role in parameter order: load (read and check the Python argument),
// prepare (everything that needs all arguments: result shapes, cross checks, copies), value (the
// C++ argument, taken with the GIL held), then the call with the GIL released, then finish
// (append results). Results are returned as: the function's own value (when the return role keeps
// it), then every output in parameter order; none gives None, one gives the object itself, more
// give a tuple.
#ifndef QEL_PYTHON_CONVERT_H
#define QEL_PYTHON_CONVERT_H

#include <qel.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <type_traits>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace qelpy {

namespace py = pybind11;

// ---- the state of one call ------------------------------------------------------------------

/// One Python-visible parameter of a bound function.
struct Param {
    std::string name;
    bool keywordOnly = false;
    bool required = true;
    std::string defaultText;  // shown in the signature line of the docstring
};

/// The Python signature of a bound function, built from its roles at binding time.
struct Signature {
    std::vector<Param> params;
    /// Adds a parameter and returns its index; a repeated name is a binding mistake.
    int add(const std::string& name, bool keywordOnly, bool required, std::string defaultText = "");
    /// "name(a, b, c=1, *, out=None)".
    std::string text(const char* function) const;
};

/// Width and height of one group of same-sized images (group 0: the main image).
struct Dims {
    int width = -1;
    int height = -1;
    int channels = 0;             // 0 grey, 3 BGR (for results shaped like their input)
    const char* owner = nullptr;  // the argument that set them
    bool known() const { return owner != nullptr; }
};

constexpr int kGroups = 3;

class Call {
public:
    Call(const char* function, const Signature& signature, const py::args& args, const py::kwargs& kwargs);

    const char* function() const { return function_; }
    /// The argument for parameter `index`, or None when it was left out (optional parameters).
    py::object arg(int index) const { return values_[static_cast<std::size_t>(index)]; }

    [[noreturn]] void typeError(const std::string& message) const;
    [[noreturn]] void valueError(const std::string& message) const;

    // Scalars are recorded by name so that shape and check functions can read them.
    void setScalar(const char* name, double value);
    double scalar(const char* name) const;
    int integer(const char* name) const { return static_cast<int>(scalar(name)); }

    Dims& dims(int group) { return dims_[group]; }
    const Dims& dims(int group) const { return dims_[group]; }
    /// The dims of `group`; a binding whose image roles never set them is a binding mistake.
    const Dims& knownDims(int group) const;

    /// Checks that `obj` is a C-contiguous uint8 array of shape (H, W) (channels 0), (H, W, 3)
    /// (channels 3) or either (channels -1), and records or compares the group's size (and, for
    /// the first image of the group, its channels). Writable when asked.
    py::array image(const py::object& obj, const char* name, int channels, int group, bool writable = false);
    /// Checks that `obj` is a C-contiguous array of `dtype` with at least one element; any shape.
    py::array buffer(const py::object& obj, const char* name, const py::dtype& dtype, const char* dtypeName,
                     bool writable = false);

    /// Inputs are remembered so that an `out=` array can be refused when it overlaps one of them.
    void addInput(const py::array& array, const char* name);
    void checkNoOverlap(const py::array& out, const char* name) const;

    bool mayRefuse = false;  // the return role can refuse: in-place copies are made safely
    long long count = 0;     // a returned record count, for the record outputs
    bool returnNone = false; // the return role asks for None whatever the outputs
    std::vector<py::object> results;
    py::object result() const;

private:
    const char* function_;
    std::vector<py::object> values_;
    std::vector<std::pair<const char*, double>> scalars_;
    Dims dims_[kGroups];
    struct Input {
        const char* begin;
        const char* end;
        const char* name;
    };
    std::vector<Input> inputs_;
};

/// A (height, width) pair computed from a call: result shapes that are not the input's.
struct Shape {
    int height;
    int width;
};
using ShapeFn = std::function<Shape(const Call&)>;
using LengthFn = std::function<long long(const Call&)>;
using CheckFn = std::function<void(Call&)>;

/// A new zero-filled C-contiguous array.
py::array zeros(const std::vector<py::ssize_t>& shape, const py::dtype& dtype);
std::string shapeText(const py::array& array);
/// Bytes of a str or os.PathLike path, in the file-system encoding.
std::string pathBytes(const py::object& obj, const char* function, const char* name);

// ---- roles -----------------------------------------------------------------------------------

/// What every role does by default: nothing.
struct Role {
    void describe(Signature&) {}
    void load(Call&) {}
    void prepare(Call&) {}
    void finish(Call&) {}
};

/// Width or height of an image group, taken from the image: no Python argument.
struct Width : Role {
    using cpp = int;
    int group = 0;
    int value(Call& c) const { return c.knownDims(group).width; }
};
struct Height : Role {
    using cpp = int;
    int group = 0;
    int value(Call& c) const { return c.knownDims(group).height; }
};
inline const Width width{};
inline const Height height{};
inline Width width_of(int group) { Width w; w.group = group; return w; }
inline Height height_of(int group) { Height h; h.group = group; return h; }

/// Width x height of group 0, for functions that take a pixel count.
struct PixelCount : Role {
    using cpp = int;
    int value(Call& c) const {
        const Dims& d = c.knownDims(0);
        return d.width * d.height;
    }
};
inline const PixelCount pixel_count{};

/// A scalar Python argument (int, float, bool, ...), recorded by name for checks and shapes.
template <class T>
struct Scalar : Role {
    using cpp = T;
    const char* name = nullptr;
    std::optional<T> fallback;
    CheckFn checkFn;
    int index = -1;
    T v{};

    void describe(Signature& s) { index = s.add(name, false, !fallback.has_value(), defaultText()); }
    void load(Call& c) {
        py::object o = c.arg(index);
        if (o.is_none() && fallback) {
            v = *fallback;
        } else {
            v = cast(c, o);
        }
        c.setScalar(name, static_cast<double>(v));
    }
    void prepare(Call& c) {
        if (checkFn) checkFn(c);
    }
    T value(Call&) const { return v; }

    /// The same argument with a check run once all arguments are loaded.
    Scalar check(CheckFn fn) const {
        Scalar s = *this;
        s.checkFn = std::move(fn);
        return s;
    }

private:
    std::string defaultText() const;
    T cast(const Call& c, const py::object& o) const;
};

template <class T>
Scalar<T> scalar(const char* name) {
    Scalar<T> s;
    s.name = name;
    return s;
}
template <class T>
Scalar<T> scalar(const char* name, T fallback) {
    Scalar<T> s;
    s.name = name;
    s.fallback = fallback;
    return s;
}
inline Scalar<int> i32(const char* name) { return scalar<int>(name); }
inline Scalar<int> i32(const char* name, int fallback) { return scalar<int>(name, fallback); }
inline Scalar<double> f64(const char* name) { return scalar<double>(name); }
inline Scalar<double> f64(const char* name, double fallback) { return scalar<double>(name, fallback); }
inline Scalar<bool> flag(const char* name) { return scalar<bool>(name); }
inline Scalar<bool> flag(const char* name, bool fallback) { return scalar<bool>(name, fallback); }
inline Scalar<unsigned char> u8(const char* name) { return scalar<unsigned char>(name); }
inline Scalar<unsigned int> u32(const char* name) { return scalar<unsigned int>(name); }

/// A Python int that sets the width or height of an image group (camera frames, which are flat
/// byte buffers, and results whose size the caller chooses).
struct SizeArg : Scalar<int> {
    int group = 0;
    bool isWidth = true;
    void load(Call& c);
};
inline SizeArg width_arg(const char* name = "width", int group = 0) {
    SizeArg s;
    s.name = name;
    s.group = group;
    s.isWidth = true;
    return s;
}
inline SizeArg height_arg(const char* name = "height", int group = 0) {
    SizeArg s;
    s.name = name;
    s.group = group;
    s.isWidth = false;
    return s;
}

/// A read-only input image: grey or binary (H, W) uint8 (channels 0) or BGR (H, W, 3) uint8. The
/// first image of a group sets its size; the others must match it. An optional image may be None
/// (a null pointer for the library).
struct ImageIn : Role {
    using cpp = unsigned char*;
    const char* name = nullptr;
    int channels = 0;
    int group = 0;
    bool optional = false;
    int index = -1;
    py::array array;
    unsigned char* data = nullptr;

    void describe(Signature& s) { index = s.add(name, false, !optional, optional ? "None" : ""); }
    void load(Call& c);
    unsigned char* value(Call&) const { return data; }
};
inline ImageIn image_in(const char* name, int channels, int group, bool optional) {
    ImageIn r;
    r.name = name;
    r.channels = channels;
    r.group = group;
    r.optional = optional;
    return r;
}
inline ImageIn grey(const char* name, int group = 0) { return image_in(name, 0, group, false); }
inline ImageIn bgr(const char* name, int group = 0) { return image_in(name, 3, group, false); }
inline ImageIn grey_or_none(const char* name, int group = 0) { return image_in(name, 0, group, true); }
/// A grey or a BGR image: the function's `rgb` flag then comes from it (see is_bgr).
inline ImageIn grey_or_bgr(const char* name, int group = 0) { return image_in(name, -1, group, false); }

/// A value worked out from the other arguments, with no Python argument of its own.
template <class T>
struct Derived : Role {
    using cpp = T;
    std::function<T(const Call&)> fn;
    T value(Call& c) const { return fn(c); }
};
template <class T>
Derived<T> derived(std::function<T(const Call&)> fn) {
    Derived<T> d;
    d.fn = std::move(fn);
    return d;
}
/// True when the images of the group are BGR: the `rgb` flag of functions taking either kind.
inline Derived<bool> is_bgr(int group = 0) {
    return derived<bool>([group](const Call& c) { return c.knownDims(group).channels == 3; });
}

/// A new result image of the group's size (or of `shape`), zero-filled, returned to the caller;
/// `out=` (keyword) supplies the array instead, which must not overlap an input unless the
/// library allows it. Pixels the library leaves alone keep the array's contents.
struct ImageOut : Role {
    using cpp = unsigned char*;
    const char* name = "out";
    int channels = 0;
    int group = 0;
    ShapeFn shape;
    bool mayAlias = false;
    bool returned = true;
    int index = -1;
    py::object given;
    py::array array;

    void describe(Signature& s) { index = s.add(name, true, false, "None"); }
    void load(Call& c) { given = c.arg(index); }
    void prepare(Call& c);
    unsigned char* value(Call&) { return static_cast<unsigned char*>(array.mutable_data()); }
    void finish(Call& c) {
        if (returned) c.results.push_back(array);
    }
    ImageOut named(const char* n) const { ImageOut o = *this; o.name = n; return o; }
    ImageOut sized(ShapeFn fn) const { ImageOut o = *this; o.shape = std::move(fn); return o; }
    /// For functions documented to accept `dst` equal to `src`.
    ImageOut aliasing() const { ImageOut o = *this; o.mayAlias = true; return o; }
};
inline ImageOut image_out(int channels, int group) {
    ImageOut o;
    o.channels = channels;
    o.group = group;
    return o;
}
inline ImageOut grey_out(int group = 0) { return image_out(0, group); }
/// Grey or BGR like the group's input image.
inline ImageOut like_out(int group = 0) { return image_out(-1, group); }
inline ImageOut bgr_out(int group = 0) { return image_out(3, group); }

/// An image the library changes in place. The Python function leaves its argument alone and
/// returns a changed copy; `out=` names the array to change instead (the argument itself for a
/// true in-place call), which must have the argument's shape.
struct ImageInOut : Role {
    using cpp = unsigned char*;
    const char* name = nullptr;
    const char* outName = "out";
    int channels = 0;
    int group = 0;
    int index = -1;
    int outIndex = -1;
    py::array input;
    py::object given;
    bool returned = true;  // false: a private copy the library may spoil, not returned
    py::array work;        // what the library changes
    py::array copyBack;    // the caller's out=, filled from `work` once the call succeeded
    bool copying = false;  // (a default py::array is an empty array, not a null handle)

    void describe(Signature& s) {
        index = s.add(name, false, true);
        if (returned) outIndex = s.add(outName, true, false, "None");
    }
    void load(Call& c);
    void prepare(Call& c);
    unsigned char* value(Call&) { return static_cast<unsigned char*>(work.mutable_data()); }
    void finish(Call& c);
    ImageInOut out_named(const char* n) const { ImageInOut o = *this; o.outName = n; return o; }
};
inline ImageInOut grey_inout(const char* name, int group = 0) {
    ImageInOut r;
    r.name = name;
    r.group = group;
    return r;
}
/// An input the library changes as a side effect the caller has no use for: it gets a copy.
inline ImageInOut grey_copy(const char* name, int group = 0) {
    ImageInOut r;
    r.name = name;
    r.group = group;
    r.returned = false;
    return r;
}
inline ImageInOut bgr_inout(const char* name, int group = 0) {
    ImageInOut r = grey_inout(name, group);
    r.channels = 3;
    return r;
}

/// A flat byte buffer whose needed size comes from the other arguments (camera frames): any
/// C-contiguous uint8 array holding at least that many bytes.
struct BytesIn : Role {
    using cpp = unsigned char*;
    const char* name = nullptr;
    LengthFn bytes;
    const char* what = "";
    int index = -1;
    py::array array;

    void describe(Signature& s) { index = s.add(name, false, true); }
    void load(Call& c);
    void prepare(Call& c);
    unsigned char* value(Call&) const { return static_cast<unsigned char*>(const_cast<void*>(array.data())); }
};
inline BytesIn bytes_in(const char* name, LengthFn bytes, const char* what) {
    BytesIn b;
    b.name = name;
    b.bytes = std::move(bytes);
    b.what = what;
    return b;
}

/// A new flat uint8 result of a computed length (camera frames), or `out=` of at least that size.
struct BytesOut : Role {
    using cpp = unsigned char*;
    const char* name = "out";
    LengthFn bytes;
    int index = -1;
    py::object given;
    py::array array;

    void describe(Signature& s) { index = s.add(name, true, false, "None"); }
    void load(Call& c) { given = c.arg(index); }
    void prepare(Call& c);
    unsigned char* value(Call&) { return static_cast<unsigned char*>(array.mutable_data()); }
    void finish(Call& c) { c.results.push_back(array); }
};
inline BytesOut bytes_out(LengthFn bytes) {
    BytesOut b;
    b.bytes = std::move(bytes);
    return b;
}

/// An input array of numbers (int32 or float64) of a fixed or computed length (none: any length
/// from 1, recorded as "<name>.count" for records_count): a histogram, a row index table. Any
/// integer (or real) array is accepted and copied, so the library never sees, nor changes, the
/// caller's memory. `verify` checks the values once all arguments are loaded.
template <class T>
struct ArrayIn : Role {
    using cpp = T*;
    const char* name = nullptr;
    LengthFn length;
    std::function<void(Call&, const T*, long long)> verify;
    int index = -1;
    py::array_t<T> array;
    std::string countName;
    bool emptyOk = false;  // a length-free array may hold no value (a chain of no codes, no samples)

    void describe(Signature& s) {
        index = s.add(name, false, true);
        countName = std::string(name) + ".count";
    }
    void load(Call& c);
    void prepare(Call& c);
    T* value(Call&) { return array.mutable_data(); }
    ArrayIn checked(std::function<void(Call&, const T*, long long)> fn) const {
        ArrayIn a = *this;
        a.verify = std::move(fn);
        return a;
    }
    ArrayIn maybe_empty() const {
        ArrayIn a = *this;
        a.emptyOk = true;
        return a;
    }
};
template <class T>
ArrayIn<T> array_in(const char* name, LengthFn length = {}) {
    ArrayIn<T> a;
    a.name = name;
    a.length = std::move(length);
    return a;
}
/// Chain codes: a uint8 array of direction codes, one per step, possibly none.
inline ArrayIn<unsigned char> chain_in(const char* name = "chain") { return array_in<unsigned char>(name).maybe_empty(); }
/// Length: the number of values of a length-free array argument (a second array that must match
/// it, or a result of one value per input value).
LengthFn count_of(const char* name);
inline ArrayIn<int> ints_in(const char* name, LengthFn length = {}) {
    ArrayIn<int> a;
    a.name = name;
    a.length = std::move(length);
    return a;
}
inline ArrayIn<double> doubles_in(const char* name, LengthFn length = {}) {
    ArrayIn<double> a;
    a.name = name;
    a.length = std::move(length);
    return a;
}
/// A 256-bin histogram argument.
ArrayIn<int> hist_in(const char* name = "hist");

/// A new zero-filled array of a computed length, returned (or, hidden, used as scratch).
template <class T>
struct ArrayOut : Role {
    using cpp = T*;
    LengthFn length;
    bool returned = true;
    bool trim = false;
    py::array_t<T> array;

    void prepare(Call& c);
    T* value(Call&) { return array.mutable_data(); }
    void finish(Call& c) {
        if (!returned) return;
        if (trim) {
            const long long n = std::max(0LL, std::min(c.count, static_cast<long long>(array.size())));
            c.results.push_back(array[py::slice(0, static_cast<py::ssize_t>(n), 1)]);
        } else {
            c.results.push_back(array);
        }
    }
    /// Returned cut to the count the function returns (see returns_count).
    ArrayOut trimmed() const {
        ArrayOut a = *this;
        a.trim = true;
        return a;
    }
};
template <class T>
ArrayOut<T> array_out(LengthFn length, bool returned = true) {
    ArrayOut<T> a;
    a.length = std::move(length);
    a.returned = returned;
    return a;
}
inline ArrayOut<int> ints_out(LengthFn length) { return array_out<int>(std::move(length)); }
ArrayOut<int> hist_out();
/// Scratch the library needs but the caller never sees.
template <class T>
ArrayOut<T> scratch(LengthFn length) { return array_out<T>(std::move(length), false); }

/// A single value the library writes through a pointer; returned unless hidden.
template <class T>
struct ValueOut : Role {
    using cpp = T*;
    T v{};
    bool returned = true;
    T* value(Call&) { return &v; }
    void finish(Call& c) {
        if (returned) c.results.push_back(py::cast(v));
    }
};
template <class T>
ValueOut<T> out_value(T initial = T{}, bool returned = true) {
    ValueOut<T> o;
    o.v = initial;
    o.returned = returned;
    return o;
}

/// A file name argument (str or os.PathLike), or with `text` a plain str, as a NUL-terminated
/// string; C is the library's parameter type (const char* or char*). The library gets a copy.
template <class C>
struct Text : Role {
    using cpp = C*;
    const char* name = nullptr;
    bool isPath = true;
    int index = -1;
    std::string bytes;
    void describe(Signature& s) { index = s.add(name, false, true); }
    void load(Call& c);
    C* value(Call&) { return bytes.data(); }
};
inline Text<const char> path(const char* name) {
    Text<const char> p;
    p.name = name;
    return p;
}
inline Text<char> path_mutable(const char* name) {
    Text<char> p;
    p.name = name;
    return p;
}
inline Text<char> text(const char* name) {
    Text<char> p;
    p.name = name;
    p.isPath = false;
    return p;
}

/// A character buffer of `size` bytes (a Python argument with a default) that the library fills;
/// returned as str (the bytes up to the first NUL, decoded in the file-system encoding). The size
/// argument itself follows as its own scalar role.
struct TextOut : Role {
    using cpp = char*;
    const char* sizeName = "buffer_size";
    std::vector<char> buffer;
    void prepare(Call& c);
    char* value(Call&) { return buffer.data(); }
    void finish(Call& c);
};
inline TextOut text_out(const char* sizeName = "buffer_size") {
    TextOut t;
    t.sizeName = sizeName;
    return t;
}

/// Caller-owned records (RLX, RLY, ...) the library writes up to a capacity given as a later
/// argument: returned as a structured numpy array of the records written (the count the function
/// returns, see returns_count).
template <class T>
struct RecordsOut : Role {
    using cpp = T*;
    const char* capacityName = "capacity";
    bool sentinel = false;
    std::vector<T> records;
    void prepare(Call& c) {
        const int capacity = c.integer(capacityName);
        records.assign(static_cast<std::size_t>(capacity > 0 ? capacity : 0) + 1, T{});
        // Records are written from the first one on; a first field of -1 marks those never written.
        if (sentinel) std::memset(static_cast<void*>(records.data()), 0xFF, records.size() * sizeof(T));
    }
    T* value(Call&) { return records.data(); }
    void finish(Call& c) {
        long long n = c.count;
        if (sentinel) {
            n = 0;
            while (n < static_cast<long long>(records.size()) - 1 &&
                   *reinterpret_cast<const std::int32_t*>(&records[static_cast<std::size_t>(n)]) != -1) {
                ++n;
            }
        }
        if (n < 0) n = 0;
        if (n > static_cast<long long>(records.size()) - 1) n = static_cast<long long>(records.size()) - 1;
        py::array_t<T> out(static_cast<py::ssize_t>(n));
        if (n > 0) std::memcpy(out.mutable_data(), records.data(), static_cast<std::size_t>(n) * sizeof(T));
        c.results.push_back(out);
    }
};
template <class T>
RecordsOut<T> records_out(const char* capacityName = "capacity") {
    RecordsOut<T> r;
    r.capacityName = capacityName;
    return r;
}
/// Records counted by the library's writing, not by its return value: returned as the leading
/// records whose first field is not -1.
template <class T>
RecordsOut<T> records_out_counted(const char* capacityName = "capacity") {
    RecordsOut<T> r = records_out<T>(capacityName);
    r.sentinel = true;
    return r;
}

/// The capacity of a record output: an int argument defaulting to width x height of group 0 (more
/// records than any search of the image can find, except for pathological growth).
struct Capacity : Scalar<int> {
    void describe(Signature& s) { index = s.add(name, false, false, "None"); }
    void load(Call& c) {
        py::object o = c.arg(index);
        if (o.is_none()) {
            const Dims& d = c.knownDims(0);
            v = static_cast<int>(std::min<long long>(static_cast<long long>(d.width) * d.height, 1 << 28));
            c.setScalar(name, v);
        } else {
            Scalar<int>::load(c);
        }
    }
};
inline Capacity capacity(const char* name = "capacity") {
    Capacity cap;
    cap.name = name;
    return cap;
}

/// Records given by the caller: a structured array of T's dtype, or an (n, fields) int32 array;
/// copied. Their number is recorded as "<name>.count" for records_count.
template <class T>
struct RecordsIn : Role {
    using cpp = T*;
    const char* name = nullptr;
    int index = -1;
    std::vector<T> records;
    std::string countName;
    void describe(Signature& s) {
        index = s.add(name, false, true);
        countName = std::string(name) + ".count";
    }
    void load(Call& c);
    T* value(Call&) { return records.data(); }
};
template <class T>
RecordsIn<T> records_in(const char* name) {
    RecordsIn<T> r;
    r.name = name;
    return r;
}
/// The number of records of a records_in argument, or of values of a length-free array argument.
inline Derived<int> records_count(const char* name) {
    std::string key = std::string(name) + ".count";
    return derived<int>([key](const Call& c) { return c.integer(key.c_str()); });
}

/// A value the Python caller does not give: an unused parameter, or one the binding fixes.
template <class T>
Derived<T> fixed(T v) {
    return derived<T>([v](const Call&) { return v; });
}

/// A tagRECT argument: a sequence of four ints, (left, top, right, bottom).
struct RectIn : Role {
    using cpp = tagRECT;
    const char* name = nullptr;
    int index = -1;
    tagRECT r{};
    void describe(Signature& s) { index = s.add(name, false, true); }
    void load(Call& c);
    tagRECT value(Call&) const { return r; }
};
inline RectIn rect_in(const char* name) {
    RectIn r;
    r.name = name;
    return r;
}
/// A tagRECT the library fills: returned as the tuple (left, top, right, bottom).
struct RectOut : Role {
    using cpp = tagRECT*;
    tagRECT r{};
    tagRECT* value(Call&) { return &r; }
    void finish(Call& c) { c.results.push_back(py::make_tuple(r.left, r.top, r.right, r.bottom)); }
};
inline RectOut rect_out() { return RectOut{}; }

// ---- return roles ------------------------------------------------------------------------------

/// The function returns nothing (void), or its value is of no use to Python callers.
template <class R>
struct Ret {
    using type = R;
    static constexpr bool mayRefuse = false;
    bool keep = true;
    void take(Call& c, const R& r) const {
        if (keep) c.results.push_back(py::cast(r));
    }
};
template <>
struct Ret<void> {
    using type = void;
    static constexpr bool mayRefuse = false;
};
inline const Ret<void> none{};
inline const Ret<int> returns_int{};
inline const Ret<double> returns_double{};
inline const Ret<bool> returns_bool{};
inline const Ret<unsigned char> returns_u8{};

/// A false (or 0, or null) return is the library refusing: ValueError saying what was refused.
template <class R>
struct Refuse {
    using type = R;
    static constexpr bool mayRefuse = true;
    const char* what;
    void take(Call& c, const R& r) const {
        if (!r) c.valueError(std::string("refused: ") + what);
    }
};
template <class R = bool>
Refuse<R> refuses(const char* what) { return Refuse<R>{what}; }

/// A record count that the record outputs consume; not returned by itself.
template <class R>
struct Count {
    using type = R;
    static constexpr bool mayRefuse = false;
    void take(Call& c, const R& r) const { c.count = static_cast<long long>(r); }
};
inline const Count<int> returns_count{};

/// A false return means "nothing there": the function returns None instead of its outputs.
struct NoneIfFalse {
    using type = bool;
    static constexpr bool mayRefuse = true;
    void take(Call& c, bool r) const { c.returnNone = !r; }
};
inline const NoneIfFalse none_if_false{};

/// A linked list of records the library allocated (contours, regions): returned as a Python list
/// of `convert(record)`, the records released by `release` before the call returns.
template <class Record>
struct RecordList {
    using type = Record*;
    static constexpr bool mayRefuse = false;
    void (*release)(Record*);
    std::function<py::object(const Record&)> convert;
    void take(Call& c, Record* head) const {
        std::unique_ptr<Record, void (*)(Record*)> owner(head, release);
        py::list items;
        for (const Record* r = head; r != nullptr; r = r->next) items.append(convert(*r));
        c.results.push_back(items);
    }
};
/// A copy of n chain codes owned by a record, as a uint8 array.
py::array_t<unsigned char> chain_copy(const unsigned char* chain, int n);

// ---- template members ----------------------------------------------------------------------------

template <class T>
std::string Scalar<T>::defaultText() const {
    if (!fallback) return "";
    if constexpr (std::is_same_v<T, bool>) {
        return *fallback ? "True" : "False";
    } else {
        return py::str(py::cast(*fallback)).cast<std::string>();
    }
}

template <class T>
T Scalar<T>::cast(const Call& c, const py::object& o) const {
    const char* kind = std::is_same_v<T, bool> ? "a bool" : std::is_floating_point_v<T> ? "a number" : "an int";
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        // pybind11 would accept an object with __index__ only; floats are refused by name here.
        if (!py::isinstance<py::int_>(o) && !py::hasattr(o, "__index__")) {
            c.typeError(std::string("'") + name + "' must be " + kind + ", got " +
                        py::str(py::type::of(o).attr("__name__")).cast<std::string>());
        }
        py::int_ i = py::reinterpret_steal<py::int_>(PyNumber_Index(o.ptr()));
        if (!i) throw py::error_already_set();
        long long wide = 0;
        try {
            wide = i.cast<long long>();
        } catch (const py::cast_error&) {
            c.valueError(std::string("'") + name + "' is out of range");
        }
        if (wide < static_cast<long long>(std::numeric_limits<T>::min()) ||
            wide > static_cast<long long>(std::numeric_limits<T>::max())) {
            c.valueError(std::string("'") + name + "' must lie in " + std::to_string(+std::numeric_limits<T>::min()) +
                         ".." + std::to_string(+std::numeric_limits<T>::max()) + ", got " + std::to_string(wide));
        }
        return static_cast<T>(wide);
    } else {
        try {
            return o.cast<T>();
        } catch (const py::cast_error&) {
            c.typeError(std::string("'") + name + "' must be " + kind + ", got " +
                        py::str(py::type::of(o).attr("__name__")).cast<std::string>());
        }
    }
}

template <class C>
void Text<C>::load(Call& c) {
    py::object o = c.arg(index);
    if (isPath) {
        bytes = pathBytes(o, c.function(), name);
    } else {
        if (!py::isinstance<py::str>(o)) {
            c.typeError(std::string("'") + name + "' must be a str, got " +
                        py::str(py::type::of(o).attr("__name__")).cast<std::string>());
        }
        bytes = o.cast<std::string>();
    }
    if (bytes.find('\0') != std::string::npos) c.valueError(std::string("'") + name + "' must not contain NUL");
}

template <class T>
void RecordsIn<T>::load(Call& c) {
    constexpr std::size_t fields = sizeof(T) / sizeof(std::int32_t);
    py::object o = c.arg(index);
    if (!py::isinstance<py::array>(o)) {
        c.typeError(std::string("'") + name + "' must be a numpy array of records, got " +
                    py::str(py::type::of(o).attr("__name__")).cast<std::string>());
    }
    py::array a = py::reinterpret_borrow<py::array>(o);
    const bool structured = a.dtype().equal(py::dtype::of<T>()) && a.ndim() == 1;
    const bool table = a.dtype().is(py::dtype::of<std::int32_t>()) && a.ndim() == 2 &&
                       a.shape(1) == static_cast<py::ssize_t>(fields);
    if (!structured && !table) {
        c.typeError(std::string("'") + name + "' must be a record array (as returned) or an (n, " +
                    std::to_string(fields) + ") int32 array, got dtype " + py::str(a.dtype()).cast<std::string>() +
                    " and shape " + shapeText(a));
    }
    py::array contiguous = py::reinterpret_borrow<py::array>(py::module_::import("numpy").attr("ascontiguousarray")(a));
    const std::size_t n = static_cast<std::size_t>(a.shape(0));
    if (n > static_cast<std::size_t>(std::numeric_limits<int>::max())) c.valueError(std::string("'") + name + "' is too long");
    records.assign(n + 1, T{});
    if (n > 0) std::memcpy(records.data(), contiguous.data(), n * sizeof(T));
    c.setScalar(countName.c_str(), static_cast<double>(n));
}

template <class T>
void ArrayIn<T>::load(Call& c) {
    py::object o = c.arg(index);
    if (!py::isinstance<py::array>(o)) {
        c.typeError(std::string("'") + name + "' must be a numpy array, got " +
                    py::str(py::type::of(o).attr("__name__")).cast<std::string>());
    }
    py::array a = py::reinterpret_borrow<py::array>(o);
    const char kind = a.dtype().kind();
    const bool integral = kind == 'i' || kind == 'u' || kind == 'b';
    if (std::is_integral_v<T> ? !integral : !(integral || kind == 'f')) {
        c.typeError(std::string("'") + name + "' must be " + (std::is_integral_v<T> ? "an integer" : "a real") +
                    " array, got dtype " + py::str(a.dtype()).cast<std::string>());
    }
    if (a.ndim() != 1) {
        c.valueError(std::string("'") + name + "' must be one-dimensional, got shape " + shapeText(a));
    }
    if (std::is_integral_v<T> && a.size() > 0 && a.dtype().itemsize() > static_cast<py::ssize_t>(sizeof(T))) {
        // Wider integers are copied only when every value fits.
        py::object lo = a.attr("min")();
        py::object hi = a.attr("max")();
        if (lo.cast<long long>() < std::numeric_limits<T>::min() || hi.cast<long long>() > std::numeric_limits<T>::max()) {
            c.valueError(std::string("'") + name + "' holds values outside the range of " +
                         py::str(py::dtype::of<T>()).cast<std::string>());
        }
    }
    array = py::reinterpret_borrow<py::array_t<T>>(a.attr("astype")(py::dtype::of<T>(), py::arg("order") = "C", py::arg("copy") = true));
    if (!length) {
        if (array.size() < (emptyOk ? 0 : 1) || array.size() > std::numeric_limits<int>::max()) {
            c.valueError(std::string("'") + name + "' must hold at least one value");
        }
        c.setScalar(countName.c_str(), static_cast<double>(array.size()));
    }
}

template <class T>
void ArrayIn<T>::prepare(Call& c) {
    if (length) {
        const long long n = length(c);
        if (array.size() != n) {
            c.valueError(std::string("'") + name + "' must hold " + std::to_string(n) + " values, got " +
                         std::to_string(array.size()));
        }
    }
    if (verify) verify(c, array.data(), static_cast<long long>(array.size()));
}

template <class T>
void ArrayOut<T>::prepare(Call& c) {
    const long long n = length(c);
    if (n < 0) c.valueError("a result length came out negative");
    array = py::reinterpret_borrow<py::array_t<T>>(zeros({static_cast<py::ssize_t>(n)}, py::dtype::of<T>()));
}

// ---- binding -----------------------------------------------------------------------------------

/// A lock for the library's functions that are not reentrant; held (with the GIL released) around
/// their calls.
std::mutex& serial_lock(const char* which);

std::string docstring(const char* function, const Signature& signature, const char* cxxName, const char* summary);

template <class Fn, class RetRole, class Tuple, std::size_t... I>
void invoke(Fn fn, const RetRole& ret, Call& c, Tuple& cargs, std::mutex* lock, std::index_sequence<I...>) {
    using R = typename RetRole::type;
    if constexpr (std::is_void_v<R>) {
        py::gil_scoped_release release;
        std::unique_lock<std::mutex> hold;
        if (lock) hold = std::unique_lock<std::mutex>(*lock);
        fn(std::get<I>(cargs)...);
    } else {
        R r{};
        {
            py::gil_scoped_release release;
            std::unique_lock<std::mutex> hold;
            if (lock) hold = std::unique_lock<std::mutex>(*lock);
            r = fn(std::get<I>(cargs)...);
        }
        ret.take(c, r);
    }
}

/// Binds `fn` as `name`: one role per C++ parameter, in order, after the return role.
template <class RetRole, class... Roles>
void def(py::module_& m, const char* name, const char* cxxName, const char* summary, std::mutex* lock,
         typename RetRole::type (*fn)(typename Roles::cpp...), RetRole ret, Roles... roles) {
    std::tuple<Roles...> proto(roles...);
    Signature sig;
    std::apply([&](auto&... r) { (r.describe(sig), ...); }, proto);
    std::string doc = docstring(name, sig, cxxName, summary);
    m.def(
        name,
        [=](const py::args& args, const py::kwargs& kwargs) -> py::object {
            Call c(name, sig, args, kwargs);
            c.mayRefuse = RetRole::mayRefuse;
            std::tuple<Roles...> rs = proto;
            std::apply([&](auto&... r) { (r.load(c), ...); }, rs);
            std::apply([&](auto&... r) { (r.prepare(c), ...); }, rs);
            std::tuple<typename Roles::cpp...> cargs =
                std::apply([&](auto&... r) { return std::tuple<typename Roles::cpp...>{r.value(c)...}; }, rs);
            invoke(fn, ret, c, cargs, lock, std::index_sequence_for<Roles...>{});
            if (c.returnNone) return py::none();
            std::apply([&](auto&... r) { (r.finish(c), ...); }, rs);
            return c.result();
        },
        doc.c_str());
}

/// The one-line binding: Python name, C++ function, summary, return role, parameter roles.
#define QEL_BIND(module, name, function, summary, ...) \
    ::qelpy::def(module, name, #function, summary, nullptr, function, __VA_ARGS__)
/// As QEL_BIND, for functions that are not reentrant: calls are serialised by the lock named `lock`
/// (one name per piece of library state, e.g. all functions of one stateful object).
#define QEL_BIND_SERIAL(module, name, function, lock, summary, ...) \
    ::qelpy::def(module, name, #function, summary, &::qelpy::serial_lock(lock), function, __VA_ARGS__)

// ---- shape and check helpers shared by the bindings ---------------------------------------------

/// Rectangle x1..x2, y1..y2 (ends included) named by the given arguments must lie inside the image
/// of `group`; a rectangle the library trusts the caller with.
CheckFn rect_inside(const char* x1, const char* x2, const char* y1, const char* y2, int group = 0);
/// An int argument must lie in lo..hi (e.g. a channel number the library uses as a byte offset).
CheckFn in_range(const char* name, int lo, int hi);
/// An int argument must be at least lo (a step or a count the library divides or sizes by).
CheckFn at_least(const char* name, int lo);
/// The point (x, y) named by two int arguments must lie inside the image of `group`.
CheckFn point_inside(const char* x, const char* y, int group = 0);
/// The four int arguments x1, x2, y1, y2 of a rectangle the library trusts to lie inside the image.
#define QEL_RECT_INSIDE(x1, x2, y1, y2) \
    ::qelpy::i32(x1), ::qelpy::i32(x2), ::qelpy::i32(y1), ::qelpy::i32(y2).check(::qelpy::rect_inside(x1, x2, y1, y2))
/// Size of the rectangle x1..x2, y1..y2 (ends included).
ShapeFn rect_shape(const char* x1, const char* x2, const char* y1, const char* y2);
/// Length: width or height of a group.
LengthFn width_length(int group = 0);
LengthFn height_length(int group = 0);
LengthFn fixed_length(long long n);
/// Length: pixels of a group (width x height).
LengthFn pixels_length(int group = 0);

// The per-header binding functions, called by the module.
void bind_io(py::module_ m);
void bind_color(py::module_ m);
void bind_histogram(py::module_ m);
void bind_filter(py::module_ m);
void bind_edge(py::module_ m);
void bind_binary(py::module_ m);
void bind_contour(py::module_ m);
void bind_line(py::module_ m);
void bind_geometry(py::module_ m);
void bind_draw(py::module_ m);
void bind_misc(py::module_ m);

}  // namespace qelpy

#endif  // QEL_PYTHON_CONVERT_H
