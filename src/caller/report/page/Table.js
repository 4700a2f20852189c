// The table of the films that are found, a page at a time.

// A page is short enough to be made anew with each letter that is searched.
const rowsOfPage = 30;

// More rows than that are not printed.
const mostRowsPrinted = 2000;

function showSound(film) {
    const channels = film.get("channels");
    return [showValue("audio", film.get("audio")), channels === null ? "" : showChannels(channels)].filter(text => text !== "").join(", ");
}

const columns = [
    {title: "Picture", className: "picture"},
    {title: "Film", className: "film", sort: "name"},
    {title: "HDR", className: "hdr", sort: "hdr"},
    {title: "Resolution", className: "resolution", sort: "resolution"},
    {title: "Video", className: "codec", sort: "codec"},
    {title: "Sound", className: "sound", sort: "audio", show: showSound},
    {title: "Languages", className: "language", sort: "language"},
    {title: "Length", className: "duration", sort: "duration"},
    {title: "Size", className: "size", sort: "size"},
    {title: "Container", className: "container", sort: "container"},
];

function fillFilmCell(cell, film) {
    // The name of the file is not told twice.
    const path = film.get("path");
    const isNamedByFile = path.endsWith(`/${film.name}`);
    cell.append(makeElement("span", {className: "name", title: film.name}, film.name),
        makeElement("span", {className: "path", title: path}, isNamedByFile ? path.slice(0, -film.name.length - 1) : path));
    if (film.error !== null)
        cell.append(makeElement("span", {className: "error"}, film.error));
}

// Texts of films come into cells as texts alone: the table library would take them for HTML.
function fillCell(column, cell, film) {
    if (column.className === "picture") {
        cell.append(makeElement("span", {className: "frame"}));
        return;
    }
    if (column.className === "film") {
        fillFilmCell(cell, film);
        return;
    }
    cell.dataset.label = column.title;
    const text = column.show?.(film) ?? showValue(column.sort, film.get(column.sort));
    cell.append(makeElement("span", {title: text}, text));
    cell.classList.toggle("is-empty", text === "");
    cell.classList.toggle("is-hdr", column.sort === "hdr" && text !== "" && text !== "SDR");
}

class Table {
    // onOrder gets a field and whether it is descending, when the user has clicked on a column; onPage the number of the page, from 0;
    // onOpen a film.
    constructor(element, films, {onOrder, onPage, onOpen}) {
        this.films = films;
        this.rows = [];
        this.events = {onOrder, onPage, onOpen};
        this.pictures = new IntersectionObserver(entries => this.#showPictures(entries), {rootMargin: "600px 0px"});
        this.table = $(element).DataTable({
            serverSide: true,
            ajax: (request, done) => done(this.#getPage(request)),
            columns: columns.map(column => ({
                data: null,
                title: column.title,
                className: column.className,
                orderable: column.sort !== undefined,
                render: () => "",
                createdCell: (cell, data, film) => fillCell(column, cell, film),
            })),
            createdRow: (row, film) => this.#prepareRow(row, film),
            drawCallback: () => this.table && this.#finishPage(),
            dom: "tip",
            order: [],
            orderMulti: false,
            autoWidth: false,
            pageLength: rowsOfPage,
            language: {info: "_START_ to _END_ of _TOTAL_", infoEmpty: "", infoFiltered: "", emptyTable: "", zeroRecords: "",
                paginate: {previous: "Previous", next: "Next"}},
        });
        element.tBodies[0].addEventListener("keydown", event => this.#moveByKey(event));
        addEventListener("beforeprint", () => this.#setPageLength(Math.min(Math.max(this.rows.length, rowsOfPage), mostRowsPrinted)));
        addEventListener("afterprint", () => this.#setPageLength(rowsOfPage));
    }

    #setPageLength(length) {
        this.table.page.len(length).draw();
    }

    #getPage(request) {
        const [order] = request.order;
        if (order)
            this.events.onOrder(columns[order.column].sort, order.dir === "desc");
        const films = this.rows.slice(request.start, request.start + request.length).map(index => this.films[index]);
        return {draw: request.draw, recordsTotal: this.films.length, recordsFiltered: this.rows.length, data: films};
    }

    #prepareRow(row, film) {
        row.tabIndex = -1;
        row.film = film;
        row.classList.toggle("has-failed", film.error !== null);
        row.addEventListener("click", () => getSelection().isCollapsed && this.events.onOpen(film));
        if (film.line !== null)
            this.pictures.observe(row);
    }

    // Pictures are decoded when their rows come near the window, and let go when they are far away.
    #showPictures(entries) {
        for (const {target, isIntersecting} of entries) {
            const frame = target.querySelector(".frame");
            frame.replaceChildren(...isIntersecting ? [makeElement("img", {src: target.film.getPicture(), alt: "", decoding: "async"})] : []);
        }
    }

    #getRows() {
        return [...this.table.table().body().rows].filter(row => row.film);
    }

    #finishPage() {
        const body = this.table.table().body();
        body.parentElement.hidden = this.rows.length === 0;
        if (body.rows.length > 0)
            body.rows[0].tabIndex = 0;
        const pages = this.table.table().container().querySelector(".dataTables_paginate");
        pages.hidden = this.table.page.info().pages < 2;
        for (const button of pages.querySelectorAll(".paginate_button"))
            button.setAttribute("role", "button");
        this.events.onPage(this.table.page());
    }

    // Shows rows, which are numbers of films.
    show(rows, {sort, isDescending, page}) {
        this.rows = rows;
        this.pictures.disconnect();
        const column = columns.findIndex(({sort: name}) => name === sort);
        this.table.order(column < 0 ? [] : [[column, isDescending ? "desc" : "asc"]]);
        // How many pages there are, the library knows only after the first of them.
        this.table.draw();
        if (page > 0)
            this.table.page(Math.min(page, this.table.page.info().pages - 1)).draw("page");
    }

    focus() {
        this.#getRows()[0]?.focus();
    }

    #focusRow(row) {
        for (const other of this.#getRows())
            other.tabIndex = other === row ? 0 : -1;
        row.focus();
    }

    #turnPage(where) {
        const before = this.table.page();
        this.table.page(where).draw("page");
        if (this.table.page() !== before)
            this.focus();
    }

    #moveByKey(event) {
        const rows = this.#getRows();
        const index = rows.indexOf(event.target);
        if (index < 0 || event.ctrlKey || event.altKey || event.metaKey)
            return;
        const actions = {
            ArrowDown: () => this.#focusRow(rows[Math.min(index + 1, rows.length - 1)]),
            ArrowUp: () => this.#focusRow(rows[Math.max(index - 1, 0)]),
            Home: () => this.#focusRow(rows[0]),
            End: () => this.#focusRow(rows.at(-1)),
            PageDown: () => this.#turnPage("next"),
            PageUp: () => this.#turnPage("previous"),
            Enter: () => this.events.onOpen(rows[index].film),
        };
        if (actions[event.key]) {
            event.preventDefault();
            actions[event.key]();
        }
    }
}
