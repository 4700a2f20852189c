// All that is known of one film.
class Details {
    constructor(dialog) {
        this.dialog = dialog;
        // A click beside it closes it.
        dialog.addEventListener("click", event => event.target === dialog && dialog.close());
    }

    // The row that was left has the focus again afterwards.
    open(film) {
        const close = makeElement("button", {type: "button", className: "close"}, "Close");
        close.addEventListener("click", () => this.dialog.close());
        const facts = makeElement("dl");
        for (const {name, meaning, index} of fieldOf.values()) {
            const text = showValue(name, film.values[index]);
            if (text !== "")
                facts.append(makeElement("dt", {title: meaning}, showFieldName(name)), makeElement("dd", {}, text));
        }
        const picture = film.getPicture();
        this.dialog.replaceChildren(makeElement("div", {className: "content"},
            makeElement("header", {}, makeElement("h2", {id: "details-name"}, film.name), close),
            ...picture === null ? [] : [makeElement("img", {src: picture, alt: ""})],
            ...film.error === null ? [] : [makeElement("p", {className: "error"}, film.error)], facts));
        this.dialog.showModal();
    }
}
