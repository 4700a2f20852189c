// What the page knows of the films: about.fields says what the values of each are.
const about = JSON.parse(document.getElementById("about").textContent);

const fieldOf = new Map(about.fields.map((field, index) => [field.name, {...field, index}]));

class Film {
    // The pictures are the element in which the picture of the film is a line, or null.
    constructor(values, error, pictures, line) {
        this.values = values;
        this.error = error;
        this.name = values[fieldOf.get("title").index] ?? values[fieldOf.get("file").index];
        this.pictures = pictures;
        this.line = line;
    }

    // The value of a field: a text, a number, a list of texts, or null when it is not known.
    get(name) {
        return this.values[fieldOf.get(name).index];
    }

    // An address of the picture, which is decoded by whoever shows it; null if there is none.
    getPicture() {
        if (this.line === null)
            return null;
        const text = getLine(this.pictures, this.line);
        const kind = text.startsWith("UklGR") ? "webp" : text.startsWith("iVBOR") ? "png" : "jpeg";
        return `data:image/${kind};base64,${text}`;
    }
}

// The lines of the element that was asked last: the pictures that come into view are neighbours.
let lastElement = null;
let lastLines = [];

function getLine(element, line) {
    if (element !== lastElement) {
        lastElement = element;
        lastLines = element.textContent.split("\n");
    }
    return lastLines[line];
}

// Takes the films out of their elements. A text is a number of the block's texts.
function takeFilms() {
    const films = [];
    for (const element of document.querySelectorAll("script.films")) {
        const block = JSON.parse(element.textContent);
        const before = element.previousElementSibling;
        const pictures = before?.className === "pictures" ? before : null;
        const readers = {
            number: value => value,
            text: value => value === null ? null : block.texts[value],
            words: value => (value ?? []).map(word => block.texts[word]),
        };
        const decoders = about.fields.map(field => readers[field.kind]);
        for (const row of block.films) {
            const [error, line] = row.splice(decoders.length);
            films.push(new Film(row.map((value, index) => decoders[index](value)), error === null ? null : block.texts[error], pictures, line));
        }
        element.remove();
    }
    return films;
}

// How values are shown.

const counts = new Intl.NumberFormat("en");
const decimals = new Intl.NumberFormat("en", {maximumFractionDigits: 1});

const sizeUnits = [[1e12, "TB"], [1e9, "GB"], [1e6, "MB"], [1e3, "kB"], [1, "bytes"]];

function showSize(bytes) {
    const [unit, name] = sizeUnits.find(([least]) => bytes >= least) ?? [1, "bytes"];
    return `${decimals.format(bytes / unit)} ${name}`;
}

function showLength(seconds) {
    const whole = Math.round(seconds);
    const pair = number => String(number).padStart(2, "0");
    return `${Math.floor(whole / 3600)}:${pair(Math.floor(whole / 60) % 60)}:${pair(whole % 60)}`;
}

const speakers = {1: "mono", 2: "stereo", 6: "5.1", 7: "6.1", 8: "7.1"};

function showChannels(count) {
    return speakers[count] ?? `${count} channels`;
}

const hdrNames = {DolbyVision: "Dolby Vision"};

// What the names of the fields do not tell by themselves.
const fieldLabels = {
    path: "Path", file: "File", hdr: "HDR", hdrformat: "HDR format", peak: "Peak luminance", colors: "Colour primaries",
    depth: "Bit depth", fps: "Frame rate", duration: "Length", codec: "Video codec", audio: "Sound codecs", language: "Languages",
    scan: "Video scan", aspect: "Aspect ratio", crop: "Picture between bars", score: "Score of the bars",
};

function showFieldName(name) {
    return fieldLabels[name] ?? name[0].toUpperCase() + name.slice(1);
}

const fieldTexts = {
    size: showSize,
    duration: showLength,
    channels: showChannels,
    hdr: kind => hdrNames[kind] ?? kind,
    bitrate: kilobits => kilobits >= 1000 ? `${decimals.format(kilobits / 1000)} Mbit/s` : `${kilobits} kbit/s`,
    depth: bits => `${bits} bit`,
    peak: nits => `${counts.format(nits)} nits`,
    fps: rate => `${rate} fps`,
};

// A value as a text; empty when it is not known.
function showValue(name, value) {
    if (value === null || value.length === 0)
        return "";
    return Array.isArray(value) ? value.join(", ") : fieldTexts[name]?.(value) ?? String(value);
}

// An element with what is in it: texts, which are never read as HTML, and other elements.
function makeElement(tag, properties = {}, ...content) {
    const element = Object.assign(document.createElement(tag), properties);
    element.append(...content);
    return element;
}
