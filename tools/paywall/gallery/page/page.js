'use strict';

// What is picked lives in the address (#screen=A,B&language=ar&flagged=1&view=FILE), so that a view can be sent to
// somebody and the Back button works. Without a choice a facet shows all of its values, except for those below.
const pictures = JSON.parse(document.getElementById('data').textContent);
const facets = [
    { key: 'screen', title: 'Screen' },
    { key: 'device', title: 'Device', first: 'phone-390x844' },
    { key: 'language', title: 'Language', first: 'en' },
    { key: 'tag', title: 'Test tag', first: '' },
    { key: 'appearance', title: 'Appearance', first: 'light' },
];
const maximumFlags = 2; // on a card
const smallest = 240; // a fitted picture's height
const gap = 20;
const byId = (id) => document.getElementById(id);
const isCut = (flag) => Boolean(flag.truncated || flag.offScreen);
const shortScreen = (name) => name.replace(/ViewController$/, '');

for (const facet of facets) {
    facet.values = [...new Set(pictures.map((picture) => picture[facet.key]))];
    facet.initial = facet.values.includes(facet.first) ? [facet.first] : facet.values;
}
pictures.forEach((picture) => {
    picture.ratio = picture.width / picture.height;
    picture.isCut = picture.flags.some(isCut);
});

// The state

let state = {};
let shown = [];

const encodeList = (values) => values.map(encodeURIComponent).join(',');

/// Addresses are typed and mangled by people: what cannot be decoded stands for itself.
function decoded(text) {
    try { return decodeURIComponent(text); } catch { return text; }
}

function readState() {
    const parameters = new Map(location.hash.slice(1).split('&').filter((part) => part.includes('='))
        .map((part) => [part.slice(0, part.indexOf('=')), part.slice(part.indexOf('=') + 1)]));
    const next = { flagged: parameters.get('flagged') || '', view: decoded(parameters.get('view') || '') };
    for (const { key, values, initial } of facets) {
        const text = parameters.get(key);
        const picked = text === undefined ? initial : text === '*' ? values
            : text.split(',').map(decoded).filter((value) => values.includes(value));
        next[key] = text === '-' ? [] : picked;
    }
    return next;
}

function hashOf(next) {
    const parts = facets.map(({ key, values, initial }) => {
        const picked = next[key];
        if (picked.join() === initial.join()) return '';
        const text = picked.length === values.length ? '*' : picked.length === 0 ? '-' : encodeList(picked);
        return `${key}=${text}`;
    });
    if (next.flagged) parts.push(`flagged=${next.flagged}`);
    if (next.view) parts.push(`view=${encodeURIComponent(next.view)}`);
    return '#' + parts.filter(Boolean).join('&');
}

function change(part, replaces = true) {
    const hash = hashOf({ ...state, ...part });
    // Stepping through pictures is not worth an entry of the history each.
    if (replaces) history.replaceState(null, '', hash);
    else history.pushState(null, '', hash);
    update();
}

// Texts

const languageNames = new Map();
function languageName(tag) {
    if (!languageNames.has(tag)) {
        let name = tag;
        try { name = new Intl.DisplayNames(['en'], { type: 'language' }).of(tag); } catch { /* stays the tag */ }
        languageNames.set(tag, name);
    }
    return languageNames.get(tag);
}

function label(key, value) {
    if (key === 'screen') return shortScreen(value);
    if (key === 'language') return `${languageName(value)} (${value})`;
    if (key === 'tag') return value || 'None';
    if (key === 'appearance') return value === 'dark' ? 'Dark' : 'Light';
    return value;
}

const isVaried = (key) => state[key].length > 1;

/// What tells the picture from its neighbours comes first.
function titleOf(picture) {
    const varied = facets.map(({ key }) => key).filter((key) => isVaried(key) && (key !== 'tag' || picture.tag));
    const keys = varied.length ? varied : ['screen'];
    return keys.map((key) => (key === 'language' ? languageName(picture.language) : label(key, picture[key])));
}

function describe(picture) {
    const tag = picture.tag ? `, tag ${picture.tag}` : '';
    const count = picture.flags.length;
    return `${shortScreen(picture.screen)}, ${picture.device}, ${languageName(picture.language)}${tag}, `
        + `${picture.appearance}, ${count === 1 ? '1 flagged text' : `${count} flagged texts`}`;
}

const verdict = (flag) => [flag.truncated ? 'cut' : '', flag.offScreen ? 'off screen' : '', flag.shrunkTo ? `${Math.floor(flag.shrunkTo * 100)} %` : '']
    .filter(Boolean).join(', ');

// Building

function element(name, properties = {}, ...children) {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
}

function flagElement(name, flag) {
    const text = element('bdi', { textContent: flag.text, title: flag.text });
    return element(name, { className: isCut(flag) ? 'flag cut' : 'flag' },
        element('strong', { textContent: verdict(flag) }),
        element('span', { className: 'view', textContent: flag.view, title: flag.view }), text);
}

function buildFacet(facet) {
    const all = element('button', { type: 'button', textContent: 'All' });
    all.setAttribute('aria-label', `All: ${facet.title}`);
    all.onclick = () => change({ [facet.key]: facet.values });
    const set = element('fieldset', {}, element('legend', {}, facet.title, all));
    set.dataset.facet = facet.key;
    facet.boxes = facet.values.map((value) => {
        const box = element('input', { type: 'checkbox', name: facet.key, value });
        box.onchange = () => change({
            [facet.key]: facet.values.filter((each, i) => facet.boxes[i].box.checked),
        });
        const only = element('button', { type: 'button', className: 'only', textContent: 'only' });
        only.setAttribute('aria-label', `Only ${label(facet.key, value)}`);
        only.onclick = () => change({ [facet.key]: [value] });
        const count = element('b');
        set.append(element('div', { className: 'choice' },
            element('label', {}, box, element('span', { textContent: label(facet.key, value), title: value }), count), only));
        return { box, count, value };
    });
    set.hidden = facet.values.length < 2;
    return set;
}

function card(picture) {
    const image = element('img', { loading: 'lazy', alt: describe(picture) });
    const button = element('button', { type: 'button' }, image);
    const [first, ...rest] = titleOf(picture);
    const title = element('div', { className: 'title', title: describe(picture) }, element('b', { textContent: first }),
        element('div', { textContent: rest.join(' · ') }));
    const flags = picture.flags.slice(0, maximumFlags).map((flag) => flagElement('div', flag));
    const left = picture.flags.length - flags.length;
    if (left > 0) flags.push(element('div', { className: 'more', textContent: `and ${left} more` }));
    const figure = element('figure', {}, button, element('figcaption', {}, title, ...flags));
    figure.style.setProperty('--ratio', picture.ratio);
    figure.dataset.file = picture.file;
    figure.dataset.state = 'waiting';
    image.onload = () => { figure.dataset.state = 'loaded'; };
    image.onerror = () => {
        figure.dataset.state = 'missing';
        image.alt = `${picture.file} is missing. Run paywall gallery again.`;
    };
    const file = encodeURI(picture.file);
    image.srcset = `previews/${file} ${picture.width}w, pictures/${file} ${picture.width * picture.scale}w`;
    button.onclick = () => change({ view: picture.file }, false);
    return figure;
}

// Sizes

let ownHeight = 0; // chosen by the user; 0: fitted

/// A card's texts below the picture, in pixels.
const captionHeight = (picture) => 48 + 42 * Math.min(picture.flags.length, maximumFlags)
    + (picture.flags.length > maximumFlags ? 20 : 0);

function totalHeight(height, width) {
    let total = 0, row = 0, used = 0;
    for (const picture of shown) {
        const next = height * picture.ratio;
        if (used && used + gap + next > width) {
            total += row + gap;
            row = used = 0;
        }
        used += (used ? gap : 0) + next;
        row = Math.max(row, height + captionHeight(picture));
    }
    return total + row;
}

/// The tallest pictures that all fit into the window, or the smallest that can still be read.
function fittedHeight() {
    const grid = byId('grid');
    const width = grid.clientWidth - 2 * gap, height = grid.clientHeight - 2 * gap;
    let best = smallest;
    for (let next = smallest; next <= height && totalHeight(next, width) <= height; next += 4) best = next;
    const widest = Math.max(...shown.map((picture) => picture.ratio), 0.1);
    return Math.min(best, Math.max(120, width / widest));
}

function applySize() {
    const height = ownHeight || fittedHeight();
    byId('grid').style.setProperty('--height', `${height}px`);
    byId('size').value = height;
    byId('fit').setAttribute('aria-pressed', ownHeight === 0);
    for (const figure of byId('grid').querySelectorAll('figure'))
        figure.querySelector('img').sizes = `${Math.round(height * figure.style.getPropertyValue('--ratio'))}px`;
}

// The grid

const passesFlagged = (picture) =>
    !state.flagged || (state.flagged === 'cut' ? picture.isCut : picture.flags.length > 0);
const matches = (picture, except) =>
    facets.every(({ key }) => key === except || state[key].includes(picture[key]));

function showCounts() {
    for (const { key, boxes } of facets)
        for (const { box, count, value } of boxes) {
            box.checked = state[key].includes(value);
            const flagged = pictures.filter((picture) => picture[key] === value && matches(picture, key)
                && picture.flags.length > 0);
            count.textContent = flagged.length || '';
            count.dataset.count = flagged.some((picture) => picture.isCut) ? 'cut' : 'any';
            count.title = flagged.length ? `${flagged.length} flagged` : '';
        }
    const picked = pictures.filter((picture) => matches(picture));
    byId('flagged').querySelector('[data-count=any]').textContent = picked.filter((picture) => picture.flags.length).length;
    byId('flagged').querySelector('[data-count=cut]').textContent = picked.filter((picture) => picture.isCut).length;
    for (const radio of byId('flagged').querySelectorAll('input')) radio.checked = radio.value === state.flagged;
}

function showGrid() {
    const grid = byId('grid');
    const next = pictures.filter((picture) => matches(picture) && passesFlagged(picture));
    const key = JSON.stringify([next.map((picture) => picture.file), facets.map((facet) => isVaried(facet.key))]);
    if (grid.dataset.key !== key) {
        shown = next;
        grid.dataset.key = key;
        grid.replaceChildren(...shown.map(card));
        if (!shown.length) grid.append(element('p', { className: 'none',
            textContent: state.flagged ? 'Every text fits here.' : 'Nothing is picked.' }));
        applySize();
    }
    const flagged = shown.filter((picture) => picture.flags.length).length;
    byId('status').textContent = `${shown.length} of ${pictures.length} pictures`
        + (flagged ? `, ${flagged} with texts that do not fit` : '');
}

/// Left and right follow the reading order, up and down the picture that stands nearest.
function moveFocus(event) {
    const buttons = [...byId('grid').querySelectorAll('figure button')];
    const index = buttons.indexOf(document.activeElement);
    const steps = { ArrowLeft: index - 1, ArrowRight: index + 1, Home: 0, End: buttons.length - 1 };
    let target = buttons[steps[event.key]];
    if (event.key === 'ArrowUp' || event.key === 'ArrowDown') target = nearest(buttons, index, event.key === 'ArrowDown');
    if (index < 0 || !target) return;
    target.focus();
    event.preventDefault();
}

function nearest(buttons, index, isDown) {
    if (index < 0) return undefined;
    const from = buttons[index].getBoundingClientRect();
    const middle = (box) => box.left + box.width / 2;
    const beyond = buttons.map((button) => ({ button, box: button.getBoundingClientRect() }))
        .filter(({ box }) => (isDown ? box.top > from.top + 1 : box.top < from.top - 1));
    if (!beyond.length) return undefined;
    const row = beyond.reduce((best, each) => ((isDown ? each.box.top < best : each.box.top > best) ? each.box.top : best),
        isDown ? Infinity : -Infinity);
    return beyond.filter(({ box }) => Math.abs(box.top - row) < 1)
        .reduce((best, each) => (Math.abs(middle(each.box) - middle(from)) < Math.abs(middle(best.box) - middle(from)) ? each : best))
        .button;
}

// The viewer

function frameElement(picture, flag) {
    const [x, y, width, height] = flag.frame;
    const frame = element('span', { className: isCut(flag) ? 'cut' : '' });
    Object.assign(frame.style, {
        left: `${(100 * x) / picture.width}%`, top: `${(100 * y) / picture.height}%`,
        width: `${(100 * width) / picture.width}%`, height: `${(100 * height) / picture.height}%`,
    });
    return frame;
}

function showFlags(picture) {
    const frames = picture.flags.map((flag) => frameElement(picture, flag));
    const items = picture.flags.map((flag, i) => {
        const item = flagElement('li', flag);
        item.tabIndex = 0;
        item.onmouseenter = item.onfocus = () => frames[i].classList.add('marked');
        item.onmouseleave = item.onblur = () => frames[i].classList.remove('marked');
        return item;
    });
    byId('frames').replaceChildren(...frames);
    byId('flags').replaceChildren(...(items.length ? items
        : [element('li', { className: 'none', textContent: 'Every text fits.' })]));
}

function showFacts(picture) {
    const scale = picture.scale;
    const facts = [
        ...facets.slice(1).map(({ key, title }) => [title, label(key, picture[key])]),
        ['Size', `${picture.width} × ${picture.height} points, ${picture.width * scale} × ${picture.height * scale} pixels`],
    ];
    byId('facts').replaceChildren(...facts.flatMap(([title, text]) =>
        [element('dt', { textContent: title }), element('dd', { textContent: text })]));
    byId('name').textContent = picture.screen;
    byId('command').textContent = picture.command.replaceAll(' --', ' \\\n    --');
    byId('original').href = `pictures/${encodeURI(picture.file)}`;
    const index = shown.indexOf(picture);
    byId('place').textContent = index < 0 ? '' : `${index + 1} of ${shown.length}`;
}

function fitPaper(picture) {
    const paper = byId('viewer').querySelector('.paper');
    const room = paper.parentElement;
    paper.style.setProperty('--ratio', picture.ratio);
    paper.classList.toggle('wide', picture.ratio > (room.clientWidth - 48) / (room.clientHeight - 48));
}

function showViewer() {
    const viewer = byId('viewer');
    const picture = pictures.find((each) => each.file === state.view);
    if (!picture) {
        if (!viewer.open) return;
        viewer.close();
        return;
    }
    if (!viewer.open) viewer.showModal();
    byId('large').src = `pictures/${encodeURI(picture.file)}`;
    byId('large').alt = describe(picture);
    fitPaper(picture);
    showFlags(picture);
    showFacts(picture);
}

function step(list, by) {
    const index = list.findIndex((picture) => picture.file === state.view);
    const next = list[index < 0 ? 0 : (index + by + list.length) % list.length];
    if (next) change({ view: next.file });
}

/// The same picture in every language.
function translations() {
    const current = pictures.find((picture) => picture.file === state.view);
    return pictures.filter((picture) =>
        facets.every(({ key }) => key === 'language' || picture[key] === current[key]));
}

function steer(event) {
    const steps = {
        ArrowLeft: () => step(shown, -1), ArrowRight: () => step(shown, 1),
        ArrowUp: () => step(translations(), -1), ArrowDown: () => step(translations(), 1),
    };
    if (!steps[event.key]) return;
    steps[event.key]();
    event.preventDefault();
}

function closed() {
    const file = state.view;
    if (file) change({ view: '' });
    byId('grid').querySelector(`figure[data-file="${CSS.escape(file)}"] button`)?.focus();
}

// The whole

function update() {
    state = readState();
    showCounts();
    showGrid();
    showViewer();
}

byId('facets').append(...facets.map(buildFacet));
byId('flagged').onchange = (event) => change({ flagged: event.target.value });
byId('picker').onsubmit = (event) => event.preventDefault();
byId('grid').onkeydown = moveFocus;
byId('size').oninput = (event) => { ownHeight = Number(event.target.value); applySize(); };
byId('fit').onclick = () => { ownHeight = 0; applySize(); };
byId('viewer').onkeydown = steer;
byId('viewer').onclose = closed;
byId('close').onclick = () => byId('viewer').close();
byId('previous').onclick = () => step(shown, -1);
byId('next').onclick = () => step(shown, 1);
window.onhashchange = update;
window.onpopstate = update;
window.onresize = () => { applySize(); showViewer(); };
update();
