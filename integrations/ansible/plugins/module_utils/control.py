"""paravue-ctl, run for a task: arguments, the password in its environment, and its answer."""

import json
import os
import subprocess

CONNECTION_ARGUMENTS = {
    'address': {'type': 'str'},
    'login': {'type': 'str'},
    'password': {'type': 'str', 'no_log': True},
    'password_file': {'type': 'path', 'no_log': False},
    'timeout': {'type': 'int', 'default': 15},
    'retries': {'type': 'int', 'default': 0},
    'program': {'type': 'path', 'default': 'paravue-ctl'},
}

HIDDEN = 'VALUE_SPECIFIED_IN_NO_LOG_PARAMETER'


class ControlError(Exception):
    """What a user has to know of a task that cannot be done."""


class ControlResult:
    """What one run of paravue-ctl has come to."""

    def __init__(self, exit_code, document, problem):
        self.exit_code = exit_code
        self.document = document  # of --json; empty when it printed none
        self.problem = problem

    @property
    def is_done(self):
        return self.exit_code == 0


def checked_address(address):
    if '@' in address:
        raise ControlError('address has a login; use login and password, which are not shown')
    if not address or address.startswith('-'):
        raise ControlError('"%s" is no address' % address)
    return address


def run(params, words, values=None, is_json=True):
    """Runs paravue-ctl with the words of a command, and the values as its file of values.

    Neither the password nor a value is in its arguments, which other users of the computer can see."""
    arguments = [params['program']] + words + ['--timeout', str(params['timeout'])]
    arguments += ['--retries', str(params['retries'])]
    if is_json:
        arguments.append('--json')
    if params['login']:
        arguments += ['--login', params['login']]
    environment = dict(os.environ)
    environment.pop('PARAVUE_PASSWORD', None)
    if params['password_file']:
        arguments += ['--password-file', params['password_file']]
    elif params['password'] is not None:
        environment['PARAVUE_PASSWORD'] = params['password']
    text = None
    if values is not None:
        arguments += ['--file', '/dev/stdin']
        text = ''.join('%s=%s\n' % pair for pair in sorted(values.items()))
    try:
        ended = subprocess.run(arguments, env=environment, input=text or '', encoding='utf-8',
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    except OSError as error:
        raise ControlError('cannot run %s: %s' % (params['program'], error.strerror)) from error
    return ControlResult(ended.returncode, document_of(ended.stdout), problem_of(ended))


def document_of(output):
    try:
        return json.loads(output)
    except ValueError:
        return {}


def problem_of(ended):
    lines = [line.replace('paravue-ctl: ', '', 1) for line in ended.stderr.splitlines() if line.strip()]
    if ended.returncode == 0 or lines:
        return '; '.join(lines)
    return 'paravue-ctl has ended with %d' % ended.returncode


def wanted_values(values):
    """The values as texts; YAML has made something else of some."""
    texts = {}
    for path, value in values.items():
        if path.count('/') != 2 or '=' in path or '\n' in path or path.startswith('#'):
            raise ControlError('"%s" is no FILE/SECTION/KEY' % path)
        if isinstance(value, bool):
            raise ControlError('the value of %s is a boolean: write it in quotes, as YAML reads on, off, '
                               'yes and no as booleans' % path)
        if value is None:
            value = ''
        if not isinstance(value, (str, int, float)):
            raise ControlError('the value of %s is neither a text nor a number' % path)
        texts[path] = str(value)
        if '\n' in texts[path] or '\r' in texts[path]:
            raise ControlError('the value of %s has several lines' % path)
    return texts


def shown_changes(changes, member):
    """One side of a difference, without secrets."""
    lines = []
    for change in changes:
        value = change[member]
        if change['secret']:
            value = '********'
            if member == 'new':
                value += ' (changed)'
        if value is not None:
            lines.append('%s=%s\n' % (change['path'], value))
    return ''.join(lines)


def shown_invocation(params, changes=()):
    """The parameters of a task as its result may have them: only values that are known to be no secrets."""
    shown = dict(params)
    if shown.get('password') is not None:
        shown['password'] = HIDDEN
    # One with a login is refused, but its password would be shown all the same.
    login, at, host = (shown.get('address') or '').rpartition('@')
    if login:
        shown['address'] = HIDDEN + at + host
    if shown.get('values') is not None:
        public = {change['path'] for change in changes if not change['secret']}
        shown['values'] = {path: value if path in public else HIDDEN
                           for path, value in shown['values'].items()}
    return {'module_args': shown}
