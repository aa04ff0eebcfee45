// Runs after the page's own script: takes the steps of a test and notes on the page what came out.
const failures = [];
let expectations = 0;
const expect = (what, is) => { ++expectations; if (!is) failures.push(what); };
const press = (key) => (document.activeElement || document.body)
    .dispatchEvent(new KeyboardEvent('keydown', { key, bubbles: true, cancelable: true }));
const figures = () => [...document.querySelectorAll('figure')];
const viewer = document.getElementById('viewer');
const input = (name, value) => document.querySelector(`input[name="${name}"][value="${value}"]`);
const soon = () => new Promise((done) => setTimeout(done, 50));
(async () => { try {
/* steps */
} catch (error) { failures.push(String(error)); }
document.body.dataset.outcome = failures.length ? failures.join('; ') : `all ${expectations} hold`;
})();
