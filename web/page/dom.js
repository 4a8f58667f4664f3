// Small tools for the document.
export const byId = (id) => document.getElementById(id);

// Calls `action` for an event of `element`, but not again before the last call has ended: whoever waits for a slow
// answer clicks again.
export function on(element, type, action) {
  element.addEventListener(type, async (event) => {
    if (type === 'submit') event.preventDefault();
    if (element.hasAttribute('aria-busy')) return;
    element.setAttribute('aria-busy', 'true');
    try { await action(event); } finally { element.removeAttribute('aria-busy'); }
  });
}

// An element with attributes, listeners (onclick: ...) and children. Texts are never taken for HTML.
export function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) on(element, name.slice(2), value);
    else if (value === true) element.setAttribute(name, '');
    else if (value !== false && value !== undefined) element.setAttribute(name, value);
  }
  element.append(...children.filter((child) => child !== undefined && child !== null));
  return element;
}

// A button that asks back: only a second click within some seconds acts.
export function sure(text, label, action) {
  let wait;
  const say = (shown, name) => { button.textContent = shown; button.setAttribute('aria-label', name); };
  const button = make('button', {'aria-label': label, onclick: async () => {
    const asked = button.textContent !== text;
    clearTimeout(wait);
    say(...asked ? [text, label] : ['Really?', `Really? ${label}`]);
    if (asked) await action();
    else wait = setTimeout(() => say(text, label), 5000);
  }}, text);
  return button;
}

let last = 0;
export const newId = () => `field-${++last}`;

// Does something that may be refused; the reason goes to `wrong`, with `input` marked.
export async function attempt(wrong, action, input) {
  wrong.textContent = '';
  input?.removeAttribute('aria-invalid');
  try {
    await action();
    return true;
  } catch (error) {
    wrong.textContent = error.message;
    input?.setAttribute('aria-invalid', 'true');
    input?.focus();
    return false;
  }
}

// The input that suits a description, with `value` in it.
export function inputFor(description, value, attributes) {
  const options = description.choices ?? (description.flag ? ['0', '1'] : null);
  if (options === null) return make('input', {value, autocomplete: 'off', spellcheck: 'false', ...attributes});
  const known = options.includes(value) ? options : [value, ...options];
  return make('select', attributes, ...known.map((one) =>
    make('option', {value: one, selected: one === value}, description.flag ? {0: '0, off', 1: '1, on'}[one] ?? one : one)));
}

export const clock = (time) => time.toLocaleTimeString([], {hour12: false});

// Marks an element that has just changed, for a moment.
export function refresh(element, text) {
  element.textContent = text;
  element.classList.add('fresh');
  setTimeout(() => element.classList.remove('fresh'), 1500);
}
