// The page: what is searched, filtered and sorted stands in the fragment of its address, so a view can be kept as a bookmark.

const byID = id => document.getElementById(id);

const films = takeFilms();
const selection = new Selection(films);

const firstSort = "name";

function readState() {
    const parameters = new URLSearchParams(location.hash.slice(1));
    const sort = parameters.get("sort") ?? firstSort;
    const name = sort.replace(/^-/, "");
    const isKnown = name === firstSort || fieldOf.has(name);
    return {
        search: parameters.get("q") ?? "",
        chosen: new Map(facets.map(facet => [facet.name, new Set(parameters.getAll(facet.name))])),
        sort: isKnown ? name : firstSort,
        isDescending: isKnown && sort.startsWith("-"),
        page: Math.max(0, (Number.parseInt(parameters.get("page")) || 1) - 1),
    };
}

function getFragment({search, chosen, sort, isDescending, page}) {
    const parameters = new URLSearchParams();
    if (search !== "")
        parameters.set("q", search);
    for (const [name, values] of chosen)
        for (const value of values)
            parameters.append(name, value);
    if (sort !== firstSort || isDescending)
        parameters.set("sort", (isDescending ? "-" : "") + sort);
    if (page > 0)
        parameters.set("page", page + 1);
    return String(parameters);
}

let state = readState();

// Browsers allow only so many changes of the address in a while.
let writing = 0;

function writeStateSoon() {
    clearTimeout(writing);
    writing = setTimeout(() => {
        const fragment = getFragment(state);
        history.replaceState(null, "", fragment === "" ? location.pathname + location.search : `#${fragment}`);
    }, 150);
}

const search = byID("search");
const sort = byID("sort");
const details = new Details(byID("details"));

const filters = new Filters(byID("filters").querySelector("form"), byID("chosen"), selection, choose);
const charts = new Charts(byID("charts"), selection, (name, value) => choose(name, value, !state.chosen.get(name).has(value)));
const table = new Table(byID("films"), films, {
    // The library asks for rows after a click on a column, and then has to get them in their new order.
    onOrder(name, isDescending) {
        if (name === state.sort && isDescending === state.isDescending)
            return;
        state = {...state, sort: name, isDescending};
        table.rows = selection.select(state).rows;
        showSort();
        writeStateSoon();
    },
    onPage(page) {
        if (page === state.page)
            return;
        state = {...state, page};
        writeStateSoon();
    },
    onOpen: film => details.open(film),
});

// The charts wait for the next frame: what is typed is answered by the table first, and many letters by one drawing.
let drawing = 0;

function showChartsSoon(result) {
    clearTimeout(drawing);
    drawing = setTimeout(() => requestAnimationFrame(() => charts.show(result)), 60);
}

function showSort() {
    sort.value = state.sort;
    byID("direction").replaceChildren(state.isDescending ? "↓" : "↑",
        makeElement("span", {}, state.isDescending ? " Descending" : " Ascending"));
}

function show() {
    const result = selection.select(state);
    if (search.value !== state.search)
        search.value = state.search;
    showSort();
    const all = `${counts.format(films.length)} ${films.length === 1 ? "film" : "films"}`;
    byID("count").textContent = result.rows.length === films.length ? all : `${counts.format(result.rows.length)} of ${all}`;
    byID("empty").hidden = films.length > 0;
    byID("nothing").hidden = result.rows.length > 0 || films.length === 0;
    filters.show(state.chosen, result.counts);
    table.show(result.rows, state);
    showChartsSoon(result);
}

function change(part) {
    state = {...state, page: 0, ...part};
    show();
    writeStateSoon();
}

function choose(name, value, isChosen) {
    const values = new Set(state.chosen.get(name));
    if (isChosen)
        values.add(value);
    else
        values.delete(value);
    change({chosen: new Map(state.chosen).set(name, values)});
}

// What the user has chosen wins over what the system says.
function takeTheme() {
    const dark = matchMedia("(prefers-color-scheme: dark)");
    const root = document.documentElement;
    const button = byID("theme");
    const set = () => {
        const isDark = root.dataset.theme ? root.dataset.theme === "dark" : dark.matches;
        button.setAttribute("aria-pressed", isDark);
        charts.takeColors();
        return isDark;
    };
    // Where a page may keep nothing, the choice is for this visit.
    try {
        root.dataset.theme = localStorage.getItem("zivora-theme") ?? "";
    } catch {
        root.dataset.theme = "";
    }
    button.addEventListener("click", () => {
        root.dataset.theme = set() ? "light" : "dark";
        set();
        try {
            localStorage.setItem("zivora-theme", root.dataset.theme);
        } catch {
            // See above.
        }
    });
    dark.addEventListener("change", set);
    set();
}

function takeKeys() {
    search.addEventListener("input", () => change({search: search.value}));
    search.addEventListener("keydown", event => {
        if (event.key === "Escape") {
            event.preventDefault();
            change({search: ""});
        } else if (event.key === "ArrowDown") {
            event.preventDefault();
            table.focus();
        }
    });
    addEventListener("keydown", event => {
        const isTyped = event.key === "/" && !event.ctrlKey && !event.altKey && !event.metaKey;
        if (!isTyped || event.target.matches("input[type=search], select") || byID("details").open)
            return;
        event.preventDefault();
        search.focus();
    });
}

function start() {
    const made = new Date(about.made * 1000);
    byID("made").textContent = `As of ${made.toLocaleString("en-GB", {dateStyle: "long", timeStyle: "short"})}`;
    sort.append(makeElement("option", {value: firstSort}, "Name"),
        ...about.fields.map(({name}) => makeElement("option", {value: name}, showFieldName(name))));
    sort.addEventListener("change", () => change({sort: sort.value}));
    byID("direction").addEventListener("click", () => change({isDescending: !state.isDescending}));
    byID("clear").addEventListener("click", () => {
        change({search: "", chosen: new Map(facets.map(({name}) => [name, new Set()]))});
        search.focus();
    });
    byID("skip").addEventListener("click", () => table.focus());
    addEventListener("hashchange", () => {
        state = readState();
        show();
    });
    if (matchMedia("(max-width: 60rem)").matches)
        byID("filters").open = false;
    if (matchMedia("(max-width: 40rem)").matches)
        byID("charts").open = false;
    takeKeys();
    takeTheme();
    show();
    // The first look through all texts takes several times as long as the next ones, so it is not left to the first letter typed.
    setTimeout(() => {
        for (const word of ["a", "an", "any"])
            selection.select({...state, search: word});
    }, 200);
}

start();
