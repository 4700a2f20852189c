// Which films are shown, and in which order.

// By these the films are filtered. Each film has one or more values of a facet; one that is not known is the empty text.
const facets = [
    {name: "hdr", label: "HDR", order: ["DolbyVision", "HDR10+", "HDR10", "HLG", "SDR"]},
    {name: "resolution", label: "Resolution", order: ["8K", "4K", "1440p", "1080p", "720p", "576p", "480p", "small"]},
    {name: "codec", label: "Video codec"},
    {name: "language", label: "Language"},
    {name: "channels", label: "Channels"},
    {name: "container", label: "Container"},
    {name: "state", label: "Analysis", order: ["complete", "failed"]},
];

function getFacetValues(facet, film) {
    if (facet.name === "state")
        return [film.error === null ? "complete" : "failed"];
    const value = film.get(facet.name);
    if (Array.isArray(value))
        return value.length > 0 ? value : [""];
    return [value === null ? "" : String(value)];
}

function showFacetValue(facet, value) {
    if (value === "")
        return "Not known";
    if (facet.name === "state")
        return value[0].toUpperCase() + value.slice(1);
    return fieldTexts[facet.name]?.(facet.name === "channels" ? Number(value) : value) ?? value;
}

// Letters that are their own in Unicode, but not to somebody who types.
const plainLetters = {ß: "ss", æ: "ae", œ: "oe", ø: "o", ł: "l", đ: "d", ð: "d", þ: "th", ı: "i"};

// A text as it is searched: without case and diacritics.
function fold(text) {
    const lower = text.toLowerCase();
    if (/^[\x00-\x7f]*$/.test(lower))
        return lower;
    return lower.normalize("NFD").replace(/\p{M}/gu, "").replace(/[ßæœøłđðþı]/g, letter => plainLetters[letter]);
}

const collator = new Intl.Collator("en", {numeric: true, sensitivity: "base"});

class Selection {
    constructor(films) {
        this.films = films;
        // A word must not be found across two values, so each is a line.
        this.texts = films.map(film => fold([film.error ?? "", ...about.fields.map(
            (field, index) => showValue(field.name, film.values[index]) + "\n" + (film.values[index] ?? ""))].join("\n")));
        this.facets = facets.map(facet => this.#makeFacet(facet));
        this.orders = new Map();
    }

    // A facet with its values, how many films have each, and the numbers of the values of each film.
    #makeFacet(facet) {
        const totals = new Map();
        const valuesOfFilms = this.films.map(film => getFacetValues(facet, film));
        for (const values of valuesOfFilms)
            for (const value of values)
                totals.set(value, (totals.get(value) ?? 0) + 1);
        const place = value => value === "" ? Infinity : facet.order ? facet.order.indexOf(value) : -totals.get(value);
        const values = [...totals.keys()].sort((a, b) => place(a) - place(b) || collator.compare(a, b));
        const codes = new Map(values.map((value, code) => [value, code]));
        // Most films have one of few values, whose lists they share.
        const singles = values.map((value, code) => [code]);
        const codesOfFilms = valuesOfFilms.map(
            list => list.length === 1 ? singles[codes.get(list[0])] : list.map(value => codes.get(value)));
        return {...facet, values, codes, codesOfFilms};
    }

    // The films in the order of a field, from the least on, as their numbers; those of which it is not known stand at the end.
    #getOrder(name) {
        if (!this.orders.has(name)) {
            const fixed = facets.find(facet => facet.name === name)?.order;
            const keys = this.films.map(film => {
                const value = name === "name" ? film.name : film.get(name);
                if (value === null || value.length === 0)
                    return null;
                return fixed ? fixed.length - fixed.indexOf(value) : Array.isArray(value) ? value.join(", ") : value;
            });
            const known = [...keys.keys()].filter(index => keys[index] !== null);
            const areNumbers = known.length > 0 && typeof keys[known[0]] === "number";
            known.sort(areNumbers ? (a, b) => keys[a] - keys[b] : (a, b) => collator.compare(keys[a], keys[b]));
            this.orders.set(name, {known, unknown: [...keys.keys()].filter(index => keys[index] === null)});
        }
        return this.orders.get(name);
    }

    // Looks for the films that have all words of the search and, in each facet of which values are chosen, one of them.
    //
    // Of each facet, "counts" says how many films its values would give beside what is chosen in the others, and "found" how many of the
    // films found have them.
    select({search, chosen, sort, isDescending}) {
        const words = fold(search).split(/\s+/).filter(word => word !== "");
        const allowed = this.facets.map(({name, values}) => {
            const wanted = chosen.get(name);
            return wanted?.size > 0 ? values.map(value => wanted.has(value)) : null;
        });
        const result = {
            counts: this.facets.map(({values}) => new Array(values.length).fill(0)),
            found: this.facets.map(({values}) => new Array(values.length).fill(0)),
            rows: [],
        };
        const isFound = new Uint8Array(this.films.length);
        for (let index = 0; index < this.films.length; ++index) {
            const text = this.texts[index];
            if (words.every(word => text.includes(word)))
                isFound[index] = this.#count(index, allowed, result);
        }
        const {known, unknown} = this.#getOrder(sort);
        for (const index of isDescending ? known.toReversed() : known)
            if (isFound[index])
                result.rows.push(index);
        for (const index of unknown)
            if (isFound[index])
                result.rows.push(index);
        return result;
    }

    // Counts a film that has the words. 1 when it is found, otherwise 0.
    #count(index, allowed, {counts, found}) {
        let missed = -1;
        for (let facet = 0; facet < allowed.length; ++facet) {
            if (allowed[facet] === null || this.facets[facet].codesOfFilms[index].some(code => allowed[facet][code]))
                continue;
            if (missed >= 0)
                return 0;
            missed = facet;
        }
        for (let facet = 0; facet < allowed.length; ++facet) {
            if (missed >= 0 && missed !== facet)
                continue;
            for (const code of this.facets[facet].codesOfFilms[index]) {
                ++counts[facet][code];
                if (missed < 0)
                    ++found[facet][code];
            }
        }
        return missed < 0 ? 1 : 0;
    }
}
