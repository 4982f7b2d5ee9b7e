// The conversion layer: argument parsing, array checks, result arrays and docstrings.
#include "convert.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <map>
#include <stdexcept>

namespace qelpy {

namespace {

std::string typeName(const py::handle& obj) {
    return py::str(py::type::of(obj).attr("__name__")).cast<std::string>();
}

std::string quoted(const char* name) { return std::string("'") + name + "'"; }

// The largest image the binding hands to the library: every byte count fits an int.
constexpr long long kMaxBytes = INT_MAX;

}  // namespace

// ---- Signature -----------------------------------------------------------------------------------

int Signature::add(const std::string& name, bool keywordOnly, bool required, std::string defaultText) {
    for (const Param& p : params) {
        if (p.name == name) throw std::logic_error("binding declares the parameter '" + name + "' twice");
    }
    params.push_back(Param{name, keywordOnly, required, std::move(defaultText)});
    return static_cast<int>(params.size()) - 1;
}

std::string Signature::text(const char* function) const {
    std::string s = std::string(function) + "(";
    bool first = true;
    bool starred = false;
    auto sep = [&] {
        if (!first) s += ", ";
        first = false;
    };
    for (int pass = 0; pass < 2; ++pass) {
        for (const Param& p : params) {
            if (p.keywordOnly != (pass == 1)) continue;
            if (pass == 1 && !starred) {
                sep();
                s += "*";
                starred = true;
            }
            sep();
            s += p.name;
            if (!p.required) s += "=" + p.defaultText;
        }
    }
    return s + ")";
}

std::string docstring(const char* function, const Signature& signature, const char* cxxName, const char* summary) {
    return signature.text(function) + "\n\n" + summary + "\n\nC++: " + cxxName + "\n";
}

// ---- Call ----------------------------------------------------------------------------------------

Call::Call(const char* function, const Signature& signature, const py::args& args, const py::kwargs& kwargs)
    : function_(function), values_(signature.params.size(), py::none()) {
    std::vector<bool> given(signature.params.size(), false);
    std::size_t next = 0;
    for (const py::handle& a : args) {
        while (next < signature.params.size() && signature.params[next].keywordOnly) ++next;
        if (next >= signature.params.size()) {
            typeError("takes at most " + std::to_string(next) + " positional arguments (" +
                      std::to_string(args.size()) + " given)");
        }
        values_[next] = py::reinterpret_borrow<py::object>(a);
        given[next] = true;
        ++next;
    }
    for (const auto& item : kwargs) {
        const std::string key = py::str(item.first).cast<std::string>();
        std::size_t i = 0;
        while (i < signature.params.size() && signature.params[i].name != key) ++i;
        if (i == signature.params.size()) typeError("got an unexpected keyword argument '" + key + "'");
        if (given[i]) typeError("got multiple values for argument '" + key + "'");
        values_[i] = py::reinterpret_borrow<py::object>(item.second);
        given[i] = true;
    }
    for (std::size_t i = 0; i < signature.params.size(); ++i) {
        const Param& p = signature.params[i];
        if (p.required && (!given[i] || values_[i].is_none())) {
            typeError("missing required argument '" + p.name + "'");
        }
    }
}

void Call::typeError(const std::string& message) const {
    throw py::type_error(std::string(function_) + "(): " + message);
}

void Call::valueError(const std::string& message) const {
    throw py::value_error(std::string(function_) + "(): " + message);
}

void Call::setScalar(const char* name, double value) {
    for (auto& s : scalars_) {
        if (std::strcmp(s.first, name) == 0) {
            s.second = value;
            return;
        }
    }
    scalars_.emplace_back(name, value);
}

double Call::scalar(const char* name) const {
    for (const auto& s : scalars_) {
        if (std::strcmp(s.first, name) == 0) return s.second;
    }
    throw std::logic_error(std::string(function_) + ": binding reads the unknown argument '" + name + "'");
}

const Dims& Call::knownDims(int group) const {
    if (!dims_[group].known()) {
        throw std::logic_error(std::string(function_) + ": binding uses the size of image group " +
                               std::to_string(group) + " before any image set it");
    }
    return dims_[group];
}

py::array Call::image(const py::object& obj, const char* name, int channels, int group, bool writable) {
    const char* kind = channels == 3   ? "a BGR image (H, W, 3)"
                       : channels == 0 ? "a grey image (H, W)"
                                       : "a grey (H, W) or BGR (H, W, 3) image";
    if (!py::isinstance<py::array>(obj)) {
        typeError(quoted(name) + " must be " + kind + " numpy array of uint8, got " + typeName(obj));
    }
    py::array a = py::reinterpret_borrow<py::array>(obj);
    if (!a.dtype().is(py::dtype::of<std::uint8_t>())) {
        typeError(quoted(name) + " must have dtype uint8, got " + py::str(a.dtype()).cast<std::string>());
    }
    const bool grey = a.ndim() == 2;
    const bool colour = a.ndim() == 3 && a.shape(2) == 3;
    const bool shapeOk = channels == 0 ? grey : channels == 3 ? colour : (grey || colour);
    if (!shapeOk) {
        valueError(quoted(name) + " must be " + kind + ", got shape " + shapeText(a));
    }
    if (!(a.flags() & py::array::c_style)) {
        valueError(quoted(name) + " must be C-contiguous (numpy.ascontiguousarray makes a copy that is)");
    }
    if (writable && !a.writeable()) valueError(quoted(name) + " must be writable");
    if (a.shape(0) < 1 || a.shape(1) < 1) valueError(quoted(name) + " must not be empty, got shape " + shapeText(a));
    if (a.nbytes() > kMaxBytes) valueError(quoted(name) + " is too large (more than 2^31 - 1 bytes)");
    const int h = static_cast<int>(a.shape(0));
    const int w = static_cast<int>(a.shape(1));
    Dims& d = dims_[group];
    if (!d.known()) {
        d.width = w;
        d.height = h;
        d.channels = colour ? 3 : 0;
        d.owner = name;
    } else if (d.width != w || d.height != h) {
        valueError(quoted(name) + " must be " + std::to_string(d.height) + " x " + std::to_string(d.width) +
                   " like " + quoted(d.owner) + ", got shape " + shapeText(a));
    }
    return a;
}

py::array Call::buffer(const py::object& obj, const char* name, const py::dtype& dtype, const char* dtypeName,
                       bool writable) {
    if (!py::isinstance<py::array>(obj)) {
        typeError(quoted(name) + " must be a numpy array of " + dtypeName + ", got " + typeName(obj));
    }
    py::array a = py::reinterpret_borrow<py::array>(obj);
    if (!a.dtype().is(dtype)) {
        typeError(quoted(name) + " must have dtype " + dtypeName + ", got " + py::str(a.dtype()).cast<std::string>());
    }
    if (!(a.flags() & py::array::c_style)) {
        valueError(quoted(name) + " must be C-contiguous (numpy.ascontiguousarray makes a copy that is)");
    }
    if (writable && !a.writeable()) valueError(quoted(name) + " must be writable");
    if (a.nbytes() > kMaxBytes) valueError(quoted(name) + " is too large (more than 2^31 - 1 bytes)");
    return a;
}

void Call::addInput(const py::array& array, const char* name) {
    const char* begin = static_cast<const char*>(array.data());
    inputs_.push_back(Input{begin, begin + array.nbytes(), name});
}

void Call::checkNoOverlap(const py::array& out, const char* name) const {
    const char* begin = static_cast<const char*>(out.data());
    const char* end = begin + out.nbytes();
    for (const Input& in : inputs_) {
        if (begin < in.end && in.begin < end) {
            valueError(quoted(name) + " must not share memory with " + quoted(in.name));
        }
    }
}

py::object Call::result() const {
    if (results.empty()) return py::none();
    if (results.size() == 1) return results.front();
    py::tuple t(results.size());
    for (std::size_t i = 0; i < results.size(); ++i) t[i] = results[i];
    return t;
}

// ---- helpers -------------------------------------------------------------------------------------

py::array zeros(const std::vector<py::ssize_t>& shape, const py::dtype& dtype) {
    py::array a(dtype, shape);
    if (a.nbytes() > 0) std::memset(a.mutable_data(), 0, static_cast<std::size_t>(a.nbytes()));
    return a;
}

std::string shapeText(const py::array& array) {
    std::string s = "(";
    for (py::ssize_t i = 0; i < array.ndim(); ++i) {
        if (i > 0) s += ", ";
        s += std::to_string(array.shape(i));
    }
    if (array.ndim() == 1) s += ",";
    return s + ")";
}

std::string pathBytes(const py::object& obj, const char* function, const char* name) {
    py::object os = py::module_::import("os");
    py::object fs;
    try {
        fs = os.attr("fsencode")(obj);
    } catch (py::error_already_set&) {
        throw py::type_error(std::string(function) + "(): " + quoted(name) + " must be a str or os.PathLike, got " +
                             typeName(obj));
    }
    std::string bytes = fs.cast<std::string>();
    if (bytes.find('\0') != std::string::npos) {
        throw py::value_error(std::string(function) + "(): " + quoted(name) + " must not contain a NUL character");
    }
    return bytes;
}

std::mutex& serial_lock(const char* which) {
    static std::mutex guard;
    static std::map<std::string, std::mutex> locks;
    std::lock_guard<std::mutex> hold(guard);
    return locks[which];
}

// ---- roles ---------------------------------------------------------------------------------------

void SizeArg::load(Call& c) {
    Scalar<int>::load(c);
    if (v < 1) c.valueError(std::string("'") + name + "' must be at least 1, got " + std::to_string(v));
    Dims& d = c.dims(group);
    (isWidth ? d.width : d.height) = v;
    if (d.width > 0 && d.height > 0) {
        d.owner = name;
        if (static_cast<long long>(d.width) * d.height * 3 > kMaxBytes) {
            c.valueError("the image size " + std::to_string(d.width) + " x " + std::to_string(d.height) +
                         " is too large");
        }
    }
}

void ImageIn::load(Call& c) {
    py::object o = c.arg(index);
    if (optional && o.is_none()) return;
    array = c.image(o, name, channels, group);
    data = static_cast<unsigned char*>(const_cast<void*>(array.data()));
    c.addInput(array, name);
}

void ImageOut::prepare(Call& c) {
    int h = 0;
    int w = 0;
    if (shape) {
        const Shape s = shape(c);
        h = s.height;
        w = s.width;
    } else {
        const Dims& d = c.knownDims(group);
        h = d.height;
        w = d.width;
    }
    if (h < 0 || w < 0) c.valueError("the result size came out negative");
    const int planes = channels >= 0 ? channels : c.knownDims(group).channels;
    std::vector<py::ssize_t> dims{h, w};
    if (planes > 0) dims.push_back(planes);
    if (given.is_none()) {
        array = zeros(dims, py::dtype::of<std::uint8_t>());
        return;
    }
    array = c.buffer(given, name, py::dtype::of<std::uint8_t>(), "uint8", true);
    bool same = static_cast<std::size_t>(array.ndim()) == dims.size();
    for (std::size_t i = 0; same && i < dims.size(); ++i) same = array.shape(static_cast<py::ssize_t>(i)) == dims[i];
    if (!same) {
        std::string want = "(" + std::to_string(h) + ", " + std::to_string(w) + (planes ? ", 3)" : ")");
        c.valueError(std::string("'") + name + "' must have shape " + want + ", got " + shapeText(array));
    }
    if (!mayAlias) c.checkNoOverlap(array, name);
}

void ImageInOut::load(Call& c) {
    input = c.image(c.arg(index), name, channels, group);
    if (returned) given = c.arg(outIndex);
}

void ImageInOut::prepare(Call& c) {
    if (!given || given.is_none()) {
        work = py::reinterpret_borrow<py::array>(input.attr("copy")());
        return;
    }
    py::array out = c.buffer(given, outName, py::dtype::of<std::uint8_t>(), "uint8", true);
    if (out.ndim() != input.ndim() || out.nbytes() != input.nbytes() ||
        !std::equal(out.shape(), out.shape() + out.ndim(), input.shape())) {
        c.valueError(std::string("'") + outName + "' must have the shape of '" + name + "', " + shapeText(input) +
                     ", got " + shapeText(out));
    }
    if (out.data() == input.data()) {
        work = out;  // a true in-place call
        return;
    }
    c.checkNoOverlap(out, outName);
    if (c.mayRefuse) {
        // A refusal must leave out= as it was: work on a copy, copied over on success.
        work = py::reinterpret_borrow<py::array>(input.attr("copy")());
        copyBack = out;
        copying = true;
    } else {
        std::memcpy(out.mutable_data(), input.data(), static_cast<std::size_t>(input.nbytes()));
        work = out;
    }
}

void ImageInOut::finish(Call& c) {
    if (!returned) return;
    if (copying) {
        std::memcpy(copyBack.mutable_data(), work.data(), static_cast<std::size_t>(work.nbytes()));
        c.results.push_back(copyBack);
    } else {
        c.results.push_back(work);
    }
}

void BytesIn::load(Call& c) {
    py::object o = c.arg(index);
    array = c.buffer(o, name, py::dtype::of<std::uint8_t>(), "uint8");
    c.addInput(array, name);
}

void BytesIn::prepare(Call& c) {
    const long long need = bytes(c);
    if (array.nbytes() < need) {
        c.valueError(std::string("'") + name + "' holds " + std::to_string(array.nbytes()) + " bytes; " + what +
                     " needs " + std::to_string(need));
    }
}

void BytesOut::prepare(Call& c) {
    const long long need = bytes(c);
    if (need < 0 || need > kMaxBytes) c.valueError("the result size is out of range");
    if (given.is_none()) {
        array = zeros({static_cast<py::ssize_t>(need)}, py::dtype::of<std::uint8_t>());
        return;
    }
    array = c.buffer(given, name, py::dtype::of<std::uint8_t>(), "uint8", true);
    if (array.nbytes() != need) {
        c.valueError(std::string("'") + name + "' must hold " + std::to_string(need) + " bytes, got " +
                     std::to_string(array.nbytes()));
    }
    c.checkNoOverlap(array, name);
}

void TextOut::prepare(Call& c) {
    const int size = c.integer(sizeName);
    if (size < 1) c.valueError(std::string("'") + sizeName + "' must be at least 1");
    buffer.assign(static_cast<std::size_t>(size) + 1, '\0');  // one spare NUL past the library's bytes
}

void TextOut::finish(Call& c) {
    py::bytes raw(buffer.data(), std::strlen(buffer.data()));
    c.results.push_back(py::module_::import("os").attr("fsdecode")(raw));
}

ArrayIn<int> hist_in(const char* name) { return ints_in(name, fixed_length(256)); }
ArrayOut<int> hist_out() { return ints_out(fixed_length(256)); }

// ---- shapes and checks -------------------------------------------------------------------------

CheckFn rect_inside(const char* x1, const char* x2, const char* y1, const char* y2, int group) {
    return [=](Call& c) {
        const Dims& d = c.knownDims(group);
        const int a = c.integer(x1), b = c.integer(x2), p = c.integer(y1), q = c.integer(y2);
        if (a < 0 || b < a || b >= d.width || p < 0 || q < p || q >= d.height) {
            c.valueError(std::string("the rectangle ") + x1 + ".." + x2 + " = " + std::to_string(a) + ".." +
                         std::to_string(b) + ", " + y1 + ".." + y2 + " = " + std::to_string(p) + ".." +
                         std::to_string(q) + " must be non-empty and lie inside the " + std::to_string(d.width) +
                         " x " + std::to_string(d.height) + " image");
        }
    };
}

CheckFn in_range(const char* name, int lo, int hi) {
    return [=](Call& c) {
        const int v = c.integer(name);
        if (v < lo || v > hi) {
            c.valueError(std::string("'") + name + "' must lie in " + std::to_string(lo) + ".." + std::to_string(hi) +
                         ", got " + std::to_string(v));
        }
    };
}

CheckFn at_least(const char* name, int lo) {
    return [=](Call& c) {
        const int v = c.integer(name);
        if (v < lo) c.valueError(quoted(name) + " must be at least " + std::to_string(lo) + ", got " + std::to_string(v));
    };
}

CheckFn point_inside(const char* x, const char* y, int group) {
    return [=](Call& c) {
        const Dims& d = c.knownDims(group);
        const int px = c.integer(x), py_ = c.integer(y);
        if (px < 0 || px >= d.width || py_ < 0 || py_ >= d.height) {
            c.valueError(std::string("the point (") + x + ", " + y + ") = (" + std::to_string(px) + ", " +
                         std::to_string(py_) + ") must lie inside the " + std::to_string(d.width) + " x " +
                         std::to_string(d.height) + " image");
        }
    };
}

void RectIn::load(Call& c) {
    py::object o = c.arg(index);
    int v[4] = {};
    bool ok = py::isinstance<py::sequence>(o) && !py::isinstance<py::str>(o) && py::len(o) == 4;
    for (std::size_t i = 0; ok && i < 4; ++i) {
        py::object e = py::reinterpret_borrow<py::sequence>(o)[i];
        ok = py::isinstance<py::int_>(e) || py::hasattr(e, "__index__");
        if (!ok) break;
        const long long w = py::int_(e).cast<long long>();
        if (w < INT32_MIN || w > INT32_MAX) c.valueError(quoted(name) + " holds a value outside the int32 range");
        v[i] = static_cast<int>(w);
    }
    if (!ok) c.typeError(quoted(name) + " must be four ints (left, top, right, bottom)");
    r = tagRECT{v[0], v[1], v[2], v[3]};
}

ShapeFn rect_shape(const char* x1, const char* x2, const char* y1, const char* y2) {
    return [=](const Call& c) { return Shape{c.integer(y2) - c.integer(y1) + 1, c.integer(x2) - c.integer(x1) + 1}; };
}

LengthFn width_length(int group) {
    return [=](const Call& c) { return static_cast<long long>(c.knownDims(group).width); };
}
LengthFn height_length(int group) {
    return [=](const Call& c) { return static_cast<long long>(c.knownDims(group).height); };
}
py::array_t<unsigned char> chain_copy(const unsigned char* chain, int n) {
    py::array_t<unsigned char> codes(n > 0 ? n : 0);
    if (n > 0) std::memcpy(codes.mutable_data(), chain, static_cast<std::size_t>(n));
    return codes;
}

LengthFn count_of(const char* name) {
    const std::string key = std::string(name) + ".count";
    return [key](const Call& c) { return static_cast<long long>(c.integer(key.c_str())); };
}
LengthFn fixed_length(long long n) {
    return [=](const Call&) { return n; };
}
LengthFn pixels_length(int group) {
    return [=](const Call& c) {
        const Dims& d = c.knownDims(group);
        return static_cast<long long>(d.width) * d.height;
    };
}

}  // namespace qelpy
