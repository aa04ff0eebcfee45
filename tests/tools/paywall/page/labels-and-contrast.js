const named = (each) => each.getAttribute('aria-label') || each.textContent.trim() || each.closest('label')
    || each.querySelector('img[alt]');
for (const each of document.querySelectorAll('button, input'))
    if (!named(each)) failures.push(`unnamed ${each.outerHTML}`);
const channel = (value) => (value / 255 <= 0.04045 ? value / 255 / 12.92 : ((value / 255 + 0.055) / 1.055) ** 2.4);
const light = (color) => { const [r, g, b] = color.match(/[\d.]+/g).map(Number).map(channel);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b; };
const ground = (each) => { const color = getComputedStyle(each).backgroundColor;
    return color === 'rgba(0, 0, 0, 0)' && each.parentElement ? ground(each.parentElement) : color; };
document.querySelector('[aria-label="All: Language"]').click();
let checked = 0;
for (const each of document.querySelectorAll('legend, fieldset span, fieldset b, #status, figcaption *, .size')) {
    if (!each.textContent.trim() || each.offsetParent === null) continue;
    const [a, b] = [light(getComputedStyle(each).color), light(ground(each))];
    ++checked;
    if ((Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05) < 4.5) failures.push(`pale ${each.outerHTML}`);
}
expect('texts were checked', checked > 30);
